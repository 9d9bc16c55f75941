#include "Client.h"

#include "Credentials.h"
#include "Interrupts.h"
#include "LineReader.h"
#include "NetworkList.h"
#include "Output.h"
#include "ReplyText.h"
#include "SignalMonitor.h"
#include "Values.h"
#include <algorithm>
#include <QDBusError>
#include <QDBusPendingCall>
#include <QEventLoop>

namespace {

const QString listMethod = QStringLiteral("networks");

QDBusMessage waitFor(QDBusPendingCall call)
{
    call.waitForFinished();
    return call.reply();
}

} // namespace

Client::Client(const QDBusConnection &connection, const Options &options, LineReader &reader,
               Interrupts &interrupts, QObject *parent)
    : QObject(parent)
    , m_connection(connection)
    , m_options(options)
    , m_reader(reader)
    , m_interrupts(interrupts)
    , m_caller(connection, interrupts)
{
    connect(&interrupts, &Interrupts::interrupted, &reader, &LineReader::giveUpAnswer);
    for (const DaemonCall &call : daemonCalls()) {
        m_commands << Command{call.name, typedForm(call.form), call.help,
                              [this, &call](const QStringList &words) { m_status = perform(call, words); }};
    }
    m_commands << command("monitor", "", "tell what happens, until Ctrl-C",
                          [this](const auto &) { m_status = monitor(); })
               << command("help", "[COMMAND]", "the commands, or one of them",
                          [this](const QStringList &words) { showHelp(words); });
}

ExitStatus Client::run(const QStringList &words)
{
    m_status = Done;
    m_interrupts.forget();
    if (!carryOut(m_commands, words)) {
        complain(notUnderstood(m_commands, words.value(0)));
        return Misused;
    }
    return m_status;
}

ExitStatus Client::perform(const DaemonCall &call, const QStringList &typed)
{
    if (!isReachable()) {
        return Unreachable;
    }
    QStringList words;
    if (!completeWords(call, typed, words)) {
        return m_status;
    }
    QVariantList values;
    for (const DaemonMethod &method : call.methods) {
        const PatientCaller::Outcome outcome = ask(call, method, words);
        const ExitStatus status = judge(call, outcome);
        if (status != Done) {
            return status;
        }
        values << outcome.answer.value;
    }
    show(call, values);
    return m_options.watch && call.methods.first().name == listMethod ? monitor() : Done;
}

// The network first: whether there is a question may depend on it.
bool Client::completeWords(const DaemonCall &call, const QStringList &typed, QStringList &words)
{
    words = typed;
    const QStringList form = call.formWords();
    for (int i = 0; i < form.size(); ++i) {
        if (credentialQuestion(form.at(i)) != nullptr) {
            words.insert(i, QString());
        }
    }
    const int network = call.networkPosition();
    if (network >= 0) {
        m_status = resolve(words[network]);
    }
    for (int i = 0; i < form.size() && m_status == Done; ++i) {
        const CredentialQuestion *question = credentialQuestion(form.at(i));
        if (question == nullptr || isNeedless(*question, words.value(network))) {
            continue;
        }
        const std::optional<QString> answer = m_reader.answer(question->question, question->echo);
        if (!answer) {
            m_status = Cancelled;
            if (m_interrupts.signalNumber() == 0) {
                m_status = Misused;
                complain(
                    QStringLiteral("No answer to the question \"%1\".").arg(question->question.trimmed()));
            }
        } else {
            words[i] = *answer;
        }
    }
    return m_status == Done;
}

// A scan takes seconds: what is known without one is enough.
ExitStatus Client::resolve(QString &network)
{
    NetworkNames::Result found = m_names.find(network);
    if (!m_names.tells(network) && (!m_knowsNetworks || !found.problem.isEmpty())) {
        const ExitStatus status = refreshNetworks();
        if (status != Done) {
            return status;
        }
        found = m_names.find(network);
    }
    if (!found.problem.isEmpty()) {
        complain(found.problem);
        return Refused;
    }
    network = found.identifier;
    return Done;
}

ExitStatus Client::refreshNetworks()
{
    const auto list = std::find_if(daemonCalls().cbegin(), daemonCalls().cend(), [](const DaemonCall &call) {
        return call.methods.first().name == listMethod;
    });
    const PatientCaller::Outcome outcome = ask(*list, list->methods.first(), {});
    const ExitStatus status = judge(*list, outcome);
    if (status == Done) {
        m_names.setNetworks(outcome.answer.value.toMap());
        m_knowsNetworks = true;
    }
    return status;
}

PatientCaller::Outcome Client::ask(const DaemonCall &call, const DaemonMethod &method,
                                   const QStringList &words)
{
    PatientCaller::Request request{method.name, call.arguments(words), call.activity(), {}};
    if (call.connects()) {
        request.cancelledBy = words.at(call.networkPosition());
        request.activity += QLatin1Char(' ') + m_names.nameOf(request.cancelledBy);
    }
    return m_caller.call(request);
}

ExitStatus Client::judge(const DaemonCall &call, const PatientCaller::Outcome &outcome) const
{
    if (outcome.isCancelled) {
        return Cancelled;
    }
    if (!outcome.answer.problem.isEmpty()) {
        complain(outcome.answer.problem);
        return Unreachable;
    }
    const QVariant &value = outcome.answer.value;
    if (call.reply == DaemonCall::Reply::Success && value.toBool()) {
        return Done;
    }
    if (!outcome.reason.isEmpty()) {
        complain(QStringLiteral("Failed: ") + outcome.reason);
        return Refused;
    }
    if (call.reply == DaemonCall::Reply::Success) {
        complain(QStringLiteral("Failed; the network daemon gives no reason."));
        return Refused;
    }
    if (call.reply == DaemonCall::Reply::Needed && isNothing(value)) {
        complain(QStringLiteral("There is none."));
        return Refused;
    }
    return Done;
}

void Client::show(const DaemonCall &call, const QVariantList &values)
{
    const bool isList = call.methods.first().name == listMethod;
    const QVector<NetworkEntry> entries = isList ? remember(values.first().toMap()) : QVector<NetworkEntry>();
    if (m_options.json) {
        printLine(replyJson(call, values));
    } else if (!isList) {
        printLine(replyText(call, values));
    } else if (entries.isEmpty()) {
        printLine(QStringLiteral("There are no networks."));
    } else {
        printLine((m_options.plain ? networkLines(entries) : networkTable(entries)).join(QLatin1Char('\n')));
    }
}

// From now on they can be told by their numbers.
QVector<NetworkEntry> Client::remember(const QVariantMap &networks)
{
    const QVector<NetworkEntry> entries = networkEntries(networks);
    QStringList identifiers;
    for (const NetworkEntry &entry : entries) {
        identifiers << entry.identifier;
    }
    m_names.setNetworks(networks);
    m_names.setListed(identifiers);
    m_knowsNetworks = true;
    return entries;
}

bool Client::isReachable() const
{
    if (!m_connection.isConnected()) {
        complain(QStringLiteral("There is no system bus: ") + m_connection.lastError().message());
    }
    return m_connection.isConnected();
}

ExitStatus Client::monitor()
{
    if (!isReachable()) {
        return Unreachable;
    }
    const SignalMonitor monitor(m_connection, m_names,
                                m_options.json ? SignalMonitor::Form::Json : SignalMonitor::Form::Text);
    QEventLoop loop;
    connect(&m_interrupts, &Interrupts::interrupted, &loop, &QEventLoop::quit);
    loop.exec();
    return Done;
}

void Client::showHelp(const QStringList &words)
{
    bool isShown = false;
    for (const Command &each : qAsConst(m_commands)) {
        if (words.isEmpty() || words.first() == each.name) {
            printLine(QStringLiteral("%1: %2").arg(each.usage(), each.help));
            isShown = true;
        }
    }
    if (words.isEmpty()) {
        printLine(networkHelp());
        printLine(credentialHelp());
    }
    if (!isShown) {
        complain(notUnderstood(m_commands, words.first()));
        m_status = Misused;
    }
}

// These two block, as the completion that they serve does.
QStringList Client::networkNames()
{
    if (!m_knowsNetworks) {
        const DaemonAnswer answer = daemonAnswer(waitFor(callDaemon(m_connection, listMethod)));
        m_knowsNetworks = answer.problem.isEmpty();
        m_names.setNetworks(answer.value.toMap());
    }
    return m_names.names();
}

QStringList Client::activeNetworkNames() const
{
    return daemonAnswer(waitFor(callDaemon(m_connection, QStringLiteral("activeNetworks"))))
        .value.toStringList();
}
