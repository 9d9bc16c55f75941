#pragma once

#include "ConnmanFixture.h"
#include "ConnmanTechnology.h"
#include "Text.h"

#include <memory>

inline const QString powered = "Powered"_s;

/// Every test begins with Wi-Fi switched on, and its proxy with the cache filled.
class TechnologyFixture : public test_support::ConnmanFixture
{
    Q_OBJECT

protected:
    ConnmanTechnology &technology() { return *m_technology; }

    static QString name() { return "wifi"_s; }
    static QString path() { return "/net/connman/technology/wifi"_s; }
    void makeProxy();

    /// What ConnMan's call log says about a call on the technology.
    static QString call(const char *member, const char *arguments = "");
    test_support::Fault fault(const char *member, const test_support::FaultKind &kind);

    QStringList debugLines() { return ConnmanFixture::debugLines("ConnmanTechnology"_s); }
    QStringList criticalLines() { return log().lines("ConnmanTechnology"_s, QtCriticalMsg); }

protected slots:
    void init();
    void cleanup();

private:
    std::unique_ptr<ConnmanTechnology> m_technology;
};
