// Which "error" signals may be about a call. They reach every client, whosever call has failed.
#include "PatientCaller.h"
#include "Suite.h"
#include "Text.h"
#include <QTest>

class ErrorTextTest : public QObject
{
    Q_OBJECT
private slots:
    void errorMayBeAboutACall_data();
    void errorMayBeAboutACall();
};

void ErrorTextTest::errorMayBeAboutACall_data()
{
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<bool>("may");
    const auto row = [](const char *name, const char *error, const char *method,
                        const QVariantList &arguments, bool may) {
        QTest::newRow(name) << QString::fromLatin1(error) << QString::fromLatin1(method) << arguments << may;
    };
    row("names the network", "Unknown network: 'a'", "connect", {"a"_s}, true);
    row("names another", "Unknown network: 'b'", "connect", {"a"_s}, false);
    row("names one that begins alike", "Unknown network: 'ab'", "connect", {"a"_s}, false);
    row("an empty argument", "Invalid parameter, network: ''", "disconnect", {""_s}, true);
    row("no closing quote", "Invalid parameter, method: 'x", "configureIPv6", {"a"_s, "x"_s}, true);
    row("one of a list", "Invalid parameter, nameserver: '1.1'", "setNameservers",
        {"a"_s, QStringList{"9.9.9.9"_s, "1.1"_s}}, true);
    row("ConnMan's reason", "invalid-key", "registerWifi", {"a"_s, "b"_s}, true);
    row("ConnMan's reason for connecting", "Network already registered.", "connect", {"a"_s}, true);
    row("somebody else's failed connection", "invalid-key", "setNameservers", {"a"_s, QStringList()}, false);
    row("the name after WPS", "Unable to register network 'Studio' using WPS.", "registerWifiWps", {"a"_s},
        true);
    row("a call without a network", "Unknown network: 'SE'", "setWifiRegion", {"SE"_s}, false);
    row("a list", "Unable to configure network 'a' with method 'auto'.", "networks", {}, false);
}

void ErrorTextTest::errorMayBeAboutACall()
{
    QFETCH(const QString, error);
    QFETCH(const QString, method);
    QFETCH(const QVariantList, arguments);
    QTEST(mayBeAbout(error, method, arguments), "may");
}

static const Suite<ErrorTextTest> errorTextTest;
#include "ErrorTextTest.moc"
