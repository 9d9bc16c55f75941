#pragma once

#include "ConnmanFixture.h"
#include "ConnmanService.h"
#include "Text.h"

#include <memory>

/// Every test begins with one connected Wi-Fi service, and its proxy with the cache filled.
class ServiceFixture : public test_support::ConnmanFixture
{
    Q_OBJECT

protected:
    ConnmanService &service() { return *m_service; }

    static QString identifier();
    static QString path() { return pathOf(identifier()); }

    /// Replaces the proxy, and fills its cache.
    void makeProxy();
    /// Takes the service away from ConnMan without telling anybody; the proxy finds out by itself.
    void removeServiceUnnoticed();

    /// What ConnMan's call log says about a call on the service, arguments in the log's notation.
    static QString call(const char *member, const QString &arguments = {});
    static QString setProperty(const char *name, const char *value);
    static QString getProperties() { return getPropertiesCall(path()); }

    /// A fault for calls of the service's interface.
    test_support::Fault fault(const char *member, const test_support::FaultKind &kind, uint count = 1);
    /// What a call that nobody has answered in time ends with.
    static test_support::FaultKind silence();
    static test_support::FaultKind connmanError(const char *name, const char *message);

    /// The debug lines of the operations.
    QStringList debugLines() { return ConnmanFixture::debugLines("ConnmanService"_s); }
    /// Critical lines, as complaints() has them.
    static QString serviceLine(const QString &text);
    static QString propertiesLine(const QString &text);
    static QString failedCallLine(const char *member, const char *errorName, const char *message);

protected slots:
    void init();
    void cleanup();

private:
    std::unique_ptr<ConnmanService> m_service;
};
