#pragma once

#include "ConnmanTechnology.h"
#include "LogCapture.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"
#include "Text.h"

#include <memory>
#include <QDBusServiceWatcher>
#include <QObject>

/// Every test begins with the simulated ConnMan that has its Wi-Fi switched on, the proxy of that with its
/// cache filled, and nothing recorded or logged yet.
class TechnologyFixture : public QObject
{
    Q_OBJECT

protected:
    test_support::SimulatorClient &connman() { return m_connman; }
    test_support::LogCapture &log() { return *m_log; }
    ConnmanTechnology &technology() { return *m_technology; }

    static QString name();
    static QString path();
    void makeProxy();

    /// What ConnMan's call log says about a call on the technology.
    static QString call(const char *member, const char *arguments = "");
    test_support::Fault fault(const char *member, const test_support::FaultKind &kind);

    QStringList debugLines() const;
    QStringList criticalLines() const;

private slots:
    void initTestCase();
    void init();
    void cleanup();

private:
    test_support::PrivateBus m_bus;
    test_support::SimulatorClient m_connman{m_bus.address()};
    // As in the daemon: Qt then follows ConnMan's coming and going without gaps.
    QDBusServiceWatcher m_presence{"net.connman"_s, QDBusConnection::systemBus()};
    std::unique_ptr<test_support::LogCapture> m_log;
    std::unique_ptr<ConnmanTechnology> m_technology;
};
