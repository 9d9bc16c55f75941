#pragma once

#include "ConnmanService.h"
#include "LogCapture.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"
#include "Text.h"

#include <memory>
#include <QDBusServiceWatcher>
#include <QObject>

/// Every test begins with the simulated ConnMan that has one connected Wi-Fi service, the proxy of that
/// service with its cache filled, and nothing recorded or logged yet.
class ServiceFixture : public QObject
{
    Q_OBJECT

protected:
    test_support::SimulatorClient &connman() { return m_connman; }
    test_support::LogCapture &log() { return *m_log; }
    ConnmanService &service() { return *m_service; }

    static QString identifier();
    static QString path();

    /// Replaces the proxy, and fills its cache.
    void makeProxy();
    /// Takes the service away from ConnMan without telling anybody; the proxy finds out by itself.
    void removeServiceUnnoticed();

    /// What ConnMan's call log says about a call on the service, arguments in the log's notation.
    static QString call(const char *member, const QString &arguments = {});
    static QString setProperty(const char *name, const char *value);
    static QString getProperties() { return call("GetProperties"); }
    QStringList calls() { return m_connman.calls(); }

    /// A fault for calls of the service's interface.
    test_support::Fault fault(const char *member, const test_support::FaultKind &kind, uint count = 1);
    static test_support::FaultKind unknownObject();
    /// What a call that nobody has answered in time ends with.
    static test_support::FaultKind silence();
    static test_support::FaultKind connmanError(const char *name, const char *message);

    /// The debug lines of the operations.
    QStringList debugLines() const;
    /// All critical lines, "category: text".
    QStringList criticalLines() const;
    static QString serviceLine(const QString &text);
    static QString propertiesLine(const QString &text);
    static QString failedCallLine(const char *member, const char *errorName, const char *message);

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
    std::unique_ptr<ConnmanService> m_service;
};
