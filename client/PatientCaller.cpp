#include "PatientCaller.h"

#include "DaemonCalls.h"
#include "Interrupts.h"
#include "Output.h"
#include <algorithm>
#include <chrono>
#include <QDBusPendingCallWatcher>

namespace {

using namespace std::chrono_literals;
constexpr auto firstProgress = 1s;
constexpr auto laterProgress = 10s;

const QString quote = QStringLiteral("'");

// Only what is done to a network fails with a reason.
bool reportsErrors(const QString &method)
{
    const QVector<DaemonCall> &calls = daemonCalls();
    return std::any_of(calls.cbegin(), calls.cend(), [&method](const DaemonCall &call) {
        return call.networkPosition() >= 0 &&
               std::any_of(call.methods.cbegin(), call.methods.cend(),
                           [&method](const DaemonMethod &each) { return each.name == method; });
    });
}

} // namespace

PatientCaller::PatientCaller(const QDBusConnection &connection, Interrupts &interrupts, QObject *parent)
    : QObject(parent)
    , m_connection(connection)
    , m_signals(connection)
{
    connect(&m_signals, &DaemonSignals::received, this, &PatientCaller::noteSignal);
    connect(&m_progress, &QTimer::timeout, this, &PatientCaller::tellProgress);
    connect(&interrupts, &Interrupts::interrupted, this, &PatientCaller::interrupt);
}

PatientCaller::Outcome PatientCaller::call(const Request &request)
{
    m_request = request;
    m_outcome = {};
    m_open = 0;
    m_waiting.start();
    m_progress.start(firstProgress);
    m_calls = std::make_unique<QObject>();
    send(request.method, request.arguments,
         [this](const DaemonAnswer &answer) { m_outcome.answer = answer; });
    m_loop.exec();
    m_calls.reset();
    m_progress.stop();
    return m_outcome;
}

// The last one before the answer is the call's own: the daemon sends them one right after the other.
void PatientCaller::noteSignal(const QString &name, const QVariantList &arguments)
{
    const QString text = arguments.value(0).toString();
    if (m_loop.isRunning() && name == QStringLiteral("error") &&
        mayBeAbout(text, m_request.method, m_request.arguments)) {
        m_outcome.reason = text;
    }
}

void PatientCaller::tellProgress()
{
    const qint64 seconds = m_waiting.elapsed() / 1000;
    if (m_progress.intervalAsDuration() == firstProgress) {
        complain(m_request.activity + (m_request.cancelledBy.isEmpty()
                                           ? QStringLiteral("; Ctrl-C ends the waiting.")
                                           : QStringLiteral("; Ctrl-C cancels.")));
        m_progress.start(laterProgress);
    } else {
        complain(QStringLiteral("%1, for %2 seconds so far.").arg(m_request.activity).arg(seconds));
    }
}

void PatientCaller::interrupt()
{
    if (!m_loop.isRunning()) {
        return;
    }
    if (m_request.cancelledBy.isEmpty() || m_outcome.isCancelled) {
        m_outcome.isCancelled = true;
        complain(QStringLiteral("Not waiting any longer; the network daemon goes on with it."));
        m_loop.quit();
        return;
    }
    m_outcome.isCancelled = true;
    disconnectNetwork();
}

void PatientCaller::disconnectNetwork()
{
    complain(QStringLiteral("Cancelling: disconnecting the network."));
    send(QStringLiteral("disconnect"), {m_request.cancelledBy}, [](const DaemonAnswer &answer) {
        complain(answer.value.toBool() ? QStringLiteral("Cancelled: the network is disconnected.")
                                       : QStringLiteral("The network daemon could not disconnect it."));
    });
}

void PatientCaller::send(const QString &method, const QVariantList &arguments,
                         const std::function<void(const DaemonAnswer &)> &take)
{
    ++m_open;
    auto *watcher = new QDBusPendingCallWatcher(callDaemon(m_connection, method, arguments), m_calls.get());
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, take] {
        take(daemonAnswer(watcher->reply()));
        if (--m_open == 0) {
            m_loop.quit();
        }
    });
}

bool mayBeAbout(const QString &error, const QString &method, const QVariantList &arguments)
{
    if (!reportsErrors(method)) {
        return false;
    }
    if (!error.contains(quote)) {
        return method == QStringLiteral("connect") || method.startsWith(QStringLiteral("register"));
    }
    const auto isQuoted = [&error](const QVariant &argument) {
        const QStringList words = argument.toStringList();
        return std::any_of(words.cbegin(), words.cend(), [&error](const QString &word) {
            return error.contains(quote + word + quote) || error.endsWith(quote + word);
        });
    };
    // After WPS has failed the network's name is quoted, not the identifier.
    return method == QStringLiteral("registerWifiWps") ||
           std::any_of(arguments.cbegin(), arguments.cend(), isQuoted);
}
