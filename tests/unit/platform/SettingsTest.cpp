#include "Suite.h"

#include <libtactora/Settings.h>

#include <memory>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

class SettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void defaultSettingsAreTheSystemScopesFile();
    void defaultSettingsAreWrittenAsIni();
    void deviceFileIsRead();
    void organisationsFileFillsTheGaps();
    void usersFilesAreNotRead();
    void firstSystemDirectoryIsTheOneWrittenTo();
    void laterSystemDirectoryIsReadToo();
    void bothScopesAreOneStore();
    void withoutAnEnvironmentTheFileIsTheDevices();

private:
    QString path(const QString &relative) const { return m_directory->filePath(relative); }
    void write(const QString &relative, const QByteArray &content) const;

    std::unique_ptr<QTemporaryDir> m_directory;
};

void SettingsTest::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Tactora AB"));
    QCoreApplication::setApplicationName(QStringLiteral("network-manager"));
}

void SettingsTest::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    qputenv("HOME", QFile::encodeName(path(QStringLiteral("home"))));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(path(QStringLiteral("home/.config"))));
    qputenv("XDG_CONFIG_DIRS", QFile::encodeName(path(QStringLiteral("first")) + QLatin1Char(':') +
                                                 path(QStringLiteral("second"))));
    libtactora::Settings::init();
}

void SettingsTest::write(const QString &relative, const QByteArray &content) const
{
    QVERIFY(QDir().mkpath(QFileInfo(path(relative)).path()));
    QFile file(path(relative));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

void SettingsTest::defaultSettingsAreTheSystemScopesFile()
{
    const QSettings systemScope(QSettings::NativeFormat, QSettings::SystemScope, QStringLiteral("Tactora AB"),
                                QStringLiteral("network-manager"));
    QCOMPARE(QSettings().fileName(), systemScope.fileName());
    QCOMPARE(QSettings().fileName(), path(QStringLiteral("first/Tactora AB/network-manager.conf")));
}

void SettingsTest::defaultSettingsAreWrittenAsIni()
{
    QSettings settings;
    settings.setValue(QStringLiteral("wifi/region"), QStringLiteral("SE"));
    settings.sync();
    QCOMPARE(settings.status(), QSettings::NoError);
    QFile file(path(QStringLiteral("first/Tactora AB/network-manager.conf")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("[wifi]\nregion=SE\n"));
}

void SettingsTest::deviceFileIsRead()
{
    write(QStringLiteral("first/Tactora AB/network-manager.conf"), "[wifi]\nregion=SE\n");
    QCOMPARE(QSettings().value(QStringLiteral("wifi/region")).toString(), QStringLiteral("SE"));
}

void SettingsTest::organisationsFileFillsTheGaps()
{
    write(QStringLiteral("first/Tactora AB.conf"), "[wifi]\nregion=SE\n");
    QCOMPARE(QSettings().value(QStringLiteral("wifi/region")).toString(), QStringLiteral("SE"));
}

void SettingsTest::usersFilesAreNotRead()
{
    write(QStringLiteral("home/.config/Tactora AB/network-manager.conf"), "[wifi]\nregion=SE\n");
    QVERIFY(!QSettings().contains(QStringLiteral("wifi/region")));
}

void SettingsTest::firstSystemDirectoryIsTheOneWrittenTo()
{
    write(QStringLiteral("second/Tactora AB/network-manager.conf"), "[wifi]\nregion=SE\n");
    {
        QSettings settings;
        settings.setValue(QStringLiteral("wifi/region"), QStringLiteral("DE"));
    }
    QVERIFY(QFile::exists(path(QStringLiteral("first/Tactora AB/network-manager.conf"))));
    QFile second(path(QStringLiteral("second/Tactora AB/network-manager.conf")));
    QVERIFY(second.open(QIODevice::ReadOnly));
    QCOMPARE(second.readAll(), QByteArray("[wifi]\nregion=SE\n"));
}

void SettingsTest::laterSystemDirectoryIsReadToo()
{
    write(QStringLiteral("second/Tactora AB/network-manager.conf"), "[wifi]\nregion=SE\n");
    QCOMPARE(QSettings().value(QStringLiteral("wifi/region")).toString(), QStringLiteral("SE"));
}

void SettingsTest::bothScopesAreOneStore()
{
    QSettings byDefault;
    const QSettings systemScope(QSettings::NativeFormat, QSettings::SystemScope, QStringLiteral("Tactora AB"),
                                QStringLiteral("network-manager"));
    byDefault.setValue(QStringLiteral("wifi/region"), QStringLiteral("SE"));
    QCOMPARE(systemScope.value(QStringLiteral("wifi/region")).toString(), QStringLiteral("SE"));
}

// Only the name is looked at: the file is the machine's.
void SettingsTest::withoutAnEnvironmentTheFileIsTheDevices()
{
    qunsetenv("XDG_CONFIG_DIRS");
    libtactora::Settings::init();
    QCOMPARE(QSettings().fileName(), QStringLiteral("/etc/xdg/Tactora AB/network-manager.conf"));
}

static const Suite<SettingsTest> suite;
#include "SettingsTest.moc"
