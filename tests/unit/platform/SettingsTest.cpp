#include "Suite.h"
#include "Text.h"

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
    QCoreApplication::setOrganizationName("Tactora AB"_s);
    QCoreApplication::setApplicationName("network-manager"_s);
}

void SettingsTest::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    qputenv("HOME", QFile::encodeName(path("home"_s)));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(path("home/.config"_s)));
    qputenv("XDG_CONFIG_DIRS", QFile::encodeName(path("first"_s) + QLatin1Char(':') + path("second"_s)));
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
    const QSettings systemScope(QSettings::NativeFormat, QSettings::SystemScope, "Tactora AB"_s,
                                "network-manager"_s);
    QCOMPARE(QSettings().fileName(), systemScope.fileName());
    QCOMPARE(QSettings().fileName(), path("first/Tactora AB/network-manager.conf"_s));
}

void SettingsTest::defaultSettingsAreWrittenAsIni()
{
    QSettings settings;
    settings.setValue("wifi/region"_s, "SE"_s);
    settings.sync();
    QCOMPARE(settings.status(), QSettings::NoError);
    QFile file(path("first/Tactora AB/network-manager.conf"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("[wifi]\nregion=SE\n"));
}

void SettingsTest::deviceFileIsRead()
{
    write("first/Tactora AB/network-manager.conf"_s, "[wifi]\nregion=SE\n");
    QCOMPARE(QSettings().value("wifi/region"_s).toString(), "SE"_s);
}

void SettingsTest::organisationsFileFillsTheGaps()
{
    write("first/Tactora AB.conf"_s, "[wifi]\nregion=SE\n");
    QCOMPARE(QSettings().value("wifi/region"_s).toString(), "SE"_s);
}

void SettingsTest::usersFilesAreNotRead()
{
    write("home/.config/Tactora AB/network-manager.conf"_s, "[wifi]\nregion=SE\n");
    QVERIFY(!QSettings().contains("wifi/region"_s));
}

void SettingsTest::firstSystemDirectoryIsTheOneWrittenTo()
{
    write("second/Tactora AB/network-manager.conf"_s, "[wifi]\nregion=SE\n");
    {
        QSettings settings;
        settings.setValue("wifi/region"_s, "DE"_s);
    }
    QVERIFY(QFile::exists(path("first/Tactora AB/network-manager.conf"_s)));
    QFile second(path("second/Tactora AB/network-manager.conf"_s));
    QVERIFY(second.open(QIODevice::ReadOnly));
    QCOMPARE(second.readAll(), QByteArray("[wifi]\nregion=SE\n"));
}

void SettingsTest::laterSystemDirectoryIsReadToo()
{
    write("second/Tactora AB/network-manager.conf"_s, "[wifi]\nregion=SE\n");
    QCOMPARE(QSettings().value("wifi/region"_s).toString(), "SE"_s);
}

void SettingsTest::bothScopesAreOneStore()
{
    QSettings byDefault;
    const QSettings systemScope(QSettings::NativeFormat, QSettings::SystemScope, "Tactora AB"_s,
                                "network-manager"_s);
    byDefault.setValue("wifi/region"_s, "SE"_s);
    QCOMPARE(systemScope.value("wifi/region"_s).toString(), "SE"_s);
}

// Only the name is looked at: the file is the machine's.
void SettingsTest::withoutAnEnvironmentTheFileIsTheDevices()
{
    qunsetenv("XDG_CONFIG_DIRS");
    libtactora::Settings::init();
    QCOMPARE(QSettings().fileName(), "/etc/xdg/Tactora AB/network-manager.conf"_s);
}

static const Suite<SettingsTest> settingsTest;
#include "SettingsTest.moc"
