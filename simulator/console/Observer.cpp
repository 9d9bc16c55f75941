#include "Observer.h"

#include "Device.h"
#include "Feed.h"
#include "Values.h"

using test_support::LedPattern;

namespace {

struct LedPurpose
{
    QString name;
    QString purpose;
};
const QVector<LedPurpose> leds = {{QStringLiteral("led10"), QStringLiteral("Ethernet")},
                                  {QStringLiteral("led8"), QStringLiteral("Wi-Fi")}};

// Setting a LED to blink takes several writes; only what they add up to is worth telling.
constexpr int ledSettleMs = 20;

const QStringList busNames = {QStringLiteral("net.connman"), QStringLiteral("com.tactora.Speech"),
                              QStringLiteral("com.tactora.ConfigurationManager"), daemonName()};

// The texts themselves belong to the speech service; these say what each number is for.
const QStringList sentences = {QStringLiteral("Ethernet has the address"),
                               QStringLiteral("Ethernet has the IPv6 address"),
                               QStringLiteral("Wi-Fi is being switched off"),
                               QStringLiteral("Wi-Fi is being switched on"),
                               QStringLiteral("Wi-Fi could not be switched"),
                               QStringLiteral("could not connect"),
                               QStringLiteral("connected"),
                               QStringLiteral("Wi-Fi is connected again"),
                               QStringLiteral("Ethernet got no address")};

QString sentenceText(const QVariantMap &request)
{
    const int number = request.value(QStringLiteral("sentenceId")).toInt();
    QString text =
        QStringLiteral("sentence %1, %2").arg(number).arg(sentences.value(number, QStringLiteral("unknown")));
    const QStringList arguments = request.value(QStringLiteral("arguments")).toStringList();
    if (!arguments.isEmpty()) {
        text += QStringLiteral(": ") + arguments.join(QLatin1Char(' '));
    }
    return text;
}

QString ledText(const LedPattern &pattern)
{
    switch (pattern.kind) {
    case LedPattern::Kind::Off:
        return QStringLiteral("off");
    case LedPattern::Kind::On:
        return QStringLiteral("on");
    case LedPattern::Kind::Blink:
        return QStringLiteral("blinks every %1 ms").arg(pattern.periodMs);
    }
    return {};
}

// "<category>|<type>|<message>"; what else a program writes to its standard error stands for itself.
QString logText(const QString &line)
{
    const QStringList parts = line.split(QLatin1Char('|'));
    if (parts.size() < 3) {
        return line;
    }
    const QString message = parts.mid(2).join(QLatin1Char('|'));
    return QStringLiteral("%1 (%2): %3").arg(parts.at(1), parts.at(0), message);
}

} // namespace

Observer::Observer(Device &device, Feed &feed, QObject *parent)
    : QObject(parent)
    , m_device(device)
    , m_feed(feed)
    , m_signals(device.connection())
{
    watchSpeech();
    watchPresence();
    connect(&m_signals, &DaemonSignals::received, this, &Observer::reportSignal);
    watchDaemonLog();
    watchLeds();
    watchChildPrograms();
}

void Observer::watchSpeech()
{
    connect(&m_device.scenery(), &Scenery::spoke, this, [this](const QVariantMap &request) {
        m_feed.happened(QStringLiteral("speech"), sentenceText(request));
    });
}

void Observer::watchPresence()
{
    m_presence.setConnection(m_device.connection());
    m_presence.setWatchMode(QDBusServiceWatcher::WatchForRegistration |
                            QDBusServiceWatcher::WatchForUnregistration);
    m_presence.setWatchedServices(busNames);
    connect(&m_presence, &QDBusServiceWatcher::serviceRegistered, this, [this](const QString &name) {
        m_feed.happened(QStringLiteral("bus"), QStringLiteral("%1 is there").arg(name));
    });
    connect(&m_presence, &QDBusServiceWatcher::serviceUnregistered, this, [this](const QString &name) {
        m_feed.happened(QStringLiteral("bus"), QStringLiteral("%1 is gone").arg(name));
    });
}

void Observer::reportSignal(const QString &name, const QVariantList &arguments)
{
    QStringList texts;
    for (const QVariant &argument : arguments) {
        texts << valueText(argument);
    }
    m_feed.happened(QStringLiteral("signal"),
                    QStringLiteral("%1 %2").arg(name, texts.join(QStringLiteral(", "))));
}

void Observer::watchDaemonLog()
{
    connect(&m_device.daemon().log(), &test_support::DaemonLog::lineAdded, this,
            [this] { reportLogLine(m_device.daemon().log().lines().constLast()); });
    connect(&m_device.daemon(), &test_support::Daemon::ended, this, [this](int status) {
        m_feed.happened(QStringLiteral("daemon"), QStringLiteral("ended with status %1").arg(status));
    });
}

void Observer::reportLogLine(const QString &line)
{
    m_feed.happened(QStringLiteral("log"), logText(line));
    // What has been told is not to be printed once more, as a problem of a test, when the daemon has ended.
    test_support::DaemonLog &log = m_device.daemon().log();
    if (log.problems().contains(line)) {
        log.takeProblem(line);
    }
}

void Observer::watchLeds()
{
    for (const LedPurpose &led : leds) {
        m_ledFiles.addPaths(m_device.sandbox().devices().ledFiles(led.name));
        m_shown.insert(led.name, m_device.sandbox().devices().led(led.name));
    }
    m_ledsSettle.setSingleShot(true);
    m_ledsSettle.setInterval(ledSettleMs);
    connect(&m_ledFiles, &QFileSystemWatcher::fileChanged, &m_ledsSettle, QOverload<>::of(&QTimer::start));
    connect(&m_ledsSettle, &QTimer::timeout, this, &Observer::reportLeds);
}

void Observer::reportLeds()
{
    for (const LedPurpose &led : leds) {
        const LedPattern pattern = m_device.sandbox().devices().led(led.name);
        if (!(pattern == m_shown.value(led.name))) {
            m_shown.insert(led.name, pattern);
            m_feed.happened(QStringLiteral("LED"),
                            QStringLiteral("%1 (%2) %3").arg(led.purpose, led.name, ledText(pattern)));
        }
    }
}

void Observer::watchChildPrograms()
{
    m_programLog.addPath(m_device.sandbox().commands().logFile());
    connect(&m_programLog, &QFileSystemWatcher::fileChanged, this, &Observer::reportChildPrograms);
}

void Observer::reportChildPrograms()
{
    const QStringList calls = m_device.sandbox().commands().calls();
    for (const QString &call : calls.mid(m_programsReported)) {
        m_feed.happened(QStringLiteral("program"), call);
    }
    m_programsReported = calls.size();
}
