#pragma once

#include "ConnmanFixture.h"
#include "ConnmanService.h"
#include "Text.h"

#include <QTest>

#include <memory>

/// Every test begins with a service of which the cache knows nothing; all share one ConnMan.
class CachedServiceFixture : public test_support::ConnmanFixture
{
    Q_OBJECT

protected:
    const ConnmanService &service() const { return *m_service; }
    static QString path() { return pathOf("wifi_x_managed_psk"_s); }

    /// Makes `properties` the whole cache; they come over the bus.
    void fill(const QVariantMap &properties)
    {
        {
            const test_support::Fault fault = answerGetProperties(properties);
            m_service->dbusUpdateProperties();
        }
        connman().clearFaults();
        log().clear();
        QCOMPARE(m_service->properties().keys(), properties.keys());
    }

    /// A critical line about the service's properties.
    static QString line(const QString &text)
    {
        return test_support::critical("ConnmanService.properties"_s, text);
    }
    static QString missing(const QString &key) { return lineAbout("Missing"_s, key); }
    static QString invalidType(const QString &key) { return lineAbout("Invalid type of"_s, key); }

private slots:
    void initTestCase()
    {
        ConnmanFixture::init();
        m_service = std::make_unique<ConnmanService>(connection(), QDBusObjectPath(path()), nullptr);
    }
    void init() { fill({}); }
    void cleanup() {}
    void cleanupTestCase()
    {
        m_service.reset();
        ConnmanFixture::cleanup();
    }

private:
    static QString lineAbout(const QString &complaint, const QString &key)
    {
        return line("%1 property \"%2\" of service \"%3\""_s.arg(complaint, key, path()));
    }

    std::unique_ptr<ConnmanService> m_service;
};
