#include "ConnectingFixture.h"

#include "ConnmanAgentDBus.h"
#include "ConnmanNames.h"
#include "EventWait.h"

#include <QCoreApplication>
#include <QDBusObjectPath>
#include <QTest>

using namespace test_support;

void ConnectingFixture::init()
{
    ConnmanFixture::init();
    m_context = std::make_unique<QObject>();
    connman().addTechnology("wifi"_s, {{"Powered"_s, true}});
    m_manager = std::make_unique<ConnmanManager>(connection(), nullptr);
    m_agent = std::make_unique<ConnmanAgent>(nullptr);
    new ConnmanAgentDBus(m_agent.get());
    QVERIFY(m_manager->registerAgent(QDBusObjectPath("/agent"_s)));
}

void ConnectingFixture::cleanup()
{
    m_context.reset();
    m_agent.reset();
    m_manager.reset();
    ConnmanFixture::cleanup();
}

QString ConnectingFixture::addNetwork(const char *ssid, const char *passphrase)
{
    QVariantMap options{{"ssid"_s, QLatin1String(ssid)}, {"security"_s, "none"_s}};
    if (passphrase != nullptr) {
        options.insert("security"_s, "psk"_s);
        options.insert("passphrase"_s, QLatin1String(passphrase));
    }
    const QString identifier = connman().addNetwork(options);
    [&] { QTRY_VERIFY_WITH_TIMEOUT(service(identifier) != nullptr, eventTimeoutMs); }();
    return identifier;
}

ConnectingFixture::ServicePtr ConnectingFixture::service(const QString &identifier) const
{
    for (const ServicePtr &each : m_manager->services()) {
        if (each->identifier() == identifier) {
            return each;
        }
    }
    return nullptr;
}

void ConnectingFixture::onConnect(const std::function<void()> &action)
{
    // The signals of earlier calls go by first: they are here with the answer to a later request.
    calls();
    QCoreApplication::processEvents();
    auto *once = new QObject(context());
    connect(&connman(), &SimulatorClient::called, once, [this, once, action](const QString &line) {
        if (line.endsWith("net.connman.Service.Connect()"_s)) {
            once->deleteLater();
            disconnect(&connman(), nullptr, once, nullptr);
            action();
        }
    });
}

Fault ConnectingFixture::delayConnect(const QString &identifier, int milliseconds)
{
    return connman().injectFault(ConnmanNames::ServiceInterface, "Connect"_s, FaultKind::delay(milliseconds),
                                 pathOf(identifier));
}
