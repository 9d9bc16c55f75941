#include "NetworkSettings.h"
#include "SettingsFixture.h"
#include "Suite.h"
#include "Text.h"
#include "WrittenFiles.h"

#include <glib.h>

#include <memory>

#include <QDir>
#include <QFile>

using namespace written_files;

namespace {
const QString corpNet = "CorpNet"_s;
const QString peap = "peap"_s;
const QString mschapv2 = "MSCHAPV2"_s;
} // namespace

class ProvisioningFileTest : public SettingsFixture
{
    Q_OBJECT

private slots:
    void fileHasFiveLinesAndNoFinalLineFeed();
    void sectionIsTheSameForEveryMethod();
    void textsAreWrittenAsKeyFilesHaveThem_data();
    void textsAreWrittenAsKeyFilesHaveThem();
    void connmanReadsTheTextsThatWereMeant_data();
    void connmanReadsTheTextsThatWereMeant();
    void fileNameCannotLeadOutOfTheDirectory();
    void earlierContentIsReplaced();
    void fileThatCannotBeOpenedIsAFailure();
    void readOnlyFileIsAFailureAndStays();
    void controlCharacterIsRefusedBeforeTheFileIsTouched_data();
    void controlCharacterIsRefusedBeforeTheFileIsTouched();
    void severalControlCharactersAreComplainedAboutOnce();
    void refusedFileIsNotMade();

    void removingDeletesTheFile();
    void removingAMissingFileDoesNothingAndLogsNothing();
    void removingLeavesOtherFilesAlone();
    void removingThatFailsLogsNothing();

private:
    NetworkSettings m_settings;
};

void ProvisioningFileTest::fileHasFiveLinesAndNoFinalLineFeed()
{
    QVERIFY(m_settings.createWpaConfFile(corp, corpNet, peap, mschapv2));

    QCOMPARE(fileContent(corpFile),
             QByteArray("[service_peap]\nType=wifi\nName=CorpNet\nEAP=peap\nPhase2=MSCHAPV2"));
    QCOMPARE(QDir(connmanDirectory).entryList(QDir::Files), QStringList("corp.config"_s));
    QCOMPARE(complaints(), QStringList());
}

void ProvisioningFileTest::sectionIsTheSameForEveryMethod()
{
    QVERIFY(m_settings.createWpaConfFile(corp, corpNet, "ttls"_s, "PAP"_s));

    QCOMPARE(fileContent(corpFile),
             QByteArray("[service_peap]\nType=wifi\nName=CorpNet\nEAP=ttls\nPhase2=PAP"));
}

void ProvisioningFileTest::textsAreWrittenAsKeyFilesHaveThem_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("outside ASCII") << "K\u00f6k \u2615"_s << QByteArray("K\xc3\xb6k \xe2\x98\x95");
    QTest::newRow("place holders") << "50%2 off %1"_s << QByteArray("50%2 off %1");
    QTest::newRow("blanks") << "  two  words "_s << QByteArray("\\s\\stwo  words ");
    QTest::newRow("key file syntax") << "[a]=#;\\"_s << QByteArray("[a]=#;\\\\");
    QTest::newRow("empty") << QString() << QByteArray("");
}

void ProvisioningFileTest::textsAreWrittenAsKeyFilesHaveThem()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, line);

    QVERIFY(m_settings.createWpaConfFile(corp, name, peap, mschapv2));
    QCOMPARE(fileContent(corpFile),
             "[service_peap]\nType=wifi\nName=" + line + "\nEAP=peap\nPhase2=MSCHAPV2");
}

void ProvisioningFileTest::connmanReadsTheTextsThatWereMeant_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("plain") << corpNet;
    QTest::newRow("leading blanks") << "  corp"_s;
    QTest::newRow("only blanks") << "   "_s;
    QTest::newRow("backslash") << "\\\\corp\\net\\"_s;
    QTest::newRow("looks escaped") << "\\scorp\\n\\x"_s;
    QTest::newRow("blank and backslash") << " \\s "_s;
    QTest::newRow("key file syntax") << "[a]=#;,\"'"_s;
    QTest::newRow("comment") << "# corp"_s;
    QTest::newRow("outside ASCII") << "K\u00f6k \u2615"_s;
}

// ConnMan reads the file with GLib.
void ProvisioningFileTest::connmanReadsTheTextsThatWereMeant()
{
    QFETCH(QString, text);
    QVERIFY(m_settings.createWpaConfFile(corp, text, text, text));

    const std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)> keyFile(g_key_file_new(), g_key_file_unref);
    QVERIFY(g_key_file_load_from_file(keyFile.get(), qPrintable(corpFile), G_KEY_FILE_NONE, nullptr));
    for (const char *key : {"Name", "EAP", "Phase2"}) {
        const std::unique_ptr<gchar, decltype(&g_free)> value(
            g_key_file_get_string(keyFile.get(), "service_peap", key, nullptr), g_free);
        QCOMPARE(QString::fromUtf8(value.get()), text);
    }
}

void ProvisioningFileTest::fileNameCannotLeadOutOfTheDirectory()
{
    const QString outside = "/var/lib/corp.config"_s;
    writeFile(outside, "other");

    QVERIFY(!m_settings.createWpaConfFile("../corp"_s, corpNet, peap, mschapv2));
    QCOMPARE(complaints(),
             QStringList(networkSettingsLine("Failed to open configuration file for writing!"_s)));
    m_settings.removeWpaConfFile("../corp"_s);
    QCOMPARE(complaints().size(), 1);
    QCOMPARE(fileContent(outside), QByteArray("other"));
}

void ProvisioningFileTest::earlierContentIsReplaced()
{
    writeFile(corpFile, QByteArray(1000, 'x'));

    QVERIFY(m_settings.createWpaConfFile(corp, corpNet, peap, mschapv2));
    QCOMPARE(fileContent(corpFile),
             QByteArray("[service_peap]\nType=wifi\nName=CorpNet\nEAP=peap\nPhase2=MSCHAPV2"));
}

void ProvisioningFileTest::fileThatCannotBeOpenedIsAFailure()
{
    QVERIFY(QDir(connmanDirectory).removeRecursively());

    QVERIFY(!m_settings.createWpaConfFile(corp, corpNet, peap, mschapv2));
    QCOMPARE(complaints(),
             QStringList(networkSettingsLine("Failed to open configuration file for writing!"_s)));
}

void ProvisioningFileTest::readOnlyFileIsAFailureAndStays()
{
    writeFile(corpFile, "earlier");
    QVERIFY(QFile::setPermissions(corpFile, QFile::ReadOwner));

    QVERIFY(!m_settings.createWpaConfFile(corp, corpNet, peap, mschapv2));
    QCOMPARE(complaints(),
             QStringList(networkSettingsLine("Failed to open configuration file for writing!"_s)));
    QCOMPARE(fileContent(corpFile), QByteArray("earlier"));
}

void ProvisioningFileTest::controlCharacterIsRefusedBeforeTheFileIsTouched_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("eap");
    QTest::addColumn<QString>("phase2");
    QTest::addColumn<QString>("field");

    const struct
    {
        const char *title;
        ushort character;
    } controls[] = {{"null", 0x00},   {"tabulator", 0x09}, {"line feed", 0x0a}, {"carriage return", 0x0d},
                    {"escape", 0x1b}, {"delete", 0x7f},    {"next line", 0x85}};
    for (const auto &control : controls) {
        const QString broken = "a%1b"_s.arg(QChar(control.character));
        QTest::addRow("%s in the name", control.title) << broken << peap << mschapv2 << "Name"_s;
        QTest::addRow("%s in the method", control.title) << corpNet << broken << mschapv2 << "EAP"_s;
        QTest::addRow("%s in the inner method", control.title) << corpNet << peap << broken << "Phase2"_s;
    }
    QTest::newRow("at the end") << corpNet << peap << "MSCHAPV2\n"_s
                                << "Phase2"_s;
    QTest::newRow("alone") << "\n"_s << peap << mschapv2 << "Name"_s;
}

void ProvisioningFileTest::controlCharacterIsRefusedBeforeTheFileIsTouched()
{
    QFETCH(QString, name);
    QFETCH(QString, eap);
    QFETCH(QString, phase2);
    QFETCH(QString, field);
    writeFile(corpFile, "earlier");

    QVERIFY(!m_settings.createWpaConfFile(corp, name, eap, phase2));
    QCOMPARE(complaints(),
             QStringList(networkSettingsLine("Control character in %1 of configuration file!"_s.arg(field))));
    QCOMPARE(fileContent(corpFile), QByteArray("earlier"));
}

void ProvisioningFileTest::severalControlCharactersAreComplainedAboutOnce()
{
    const QString broken = "\n\n"_s;

    QVERIFY(!m_settings.createWpaConfFile(corp, broken, broken, broken));
    QCOMPARE(complaints(),
             QStringList(networkSettingsLine("Control character in Name of configuration file!"_s)));
}

void ProvisioningFileTest::refusedFileIsNotMade()
{
    QVERIFY(!m_settings.createWpaConfFile(corp, "a\nb"_s, peap, mschapv2));
    QVERIFY(!QFile::exists(corpFile));
}

void ProvisioningFileTest::removingDeletesTheFile()
{
    writeFile(corpFile, "anything");
    m_settings.removeWpaConfFile(corp);
    QVERIFY(!QFile::exists(corpFile));
    QVERIFY(log().messages().isEmpty());
}

void ProvisioningFileTest::removingAMissingFileDoesNothingAndLogsNothing()
{
    m_settings.removeWpaConfFile(corp);
    QVERIFY(log().messages().isEmpty());
}

void ProvisioningFileTest::removingLeavesOtherFilesAlone()
{
    const QString other = "/var/lib/connman/corp2.config"_s;
    writeFile(corpFile, "anything");
    writeFile(other, "other");

    m_settings.removeWpaConfFile(corp);
    QCOMPARE(fileContent(other), QByteArray("other"));
}

void ProvisioningFileTest::removingThatFailsLogsNothing()
{
    QVERIFY(QDir(connmanDirectory).mkdir("corp.config"_s));
    m_settings.removeWpaConfFile(corp);
    QVERIFY(log().messages().isEmpty());
}

static const Suite<ProvisioningFileTest> provisioningFileTest;
#include "ProvisioningFileTest.moc"
