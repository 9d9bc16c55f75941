#include "NetworkSettings.h"
#include "SettingsFixture.h"
#include "Suite.h"
#include "Text.h"
#include "WrittenFiles.h"

#include <QDir>
#include <QFile>

using namespace written_files;

class HostNameTest : public SettingsFixture
{
    Q_OBJECT

private slots:
    void hostNameIsTheFileWithSimplifiedWhiteSpace_data();
    void hostNameIsTheFileWithSimplifiedWhiteSpace();
    void readingTheHostNameLeavesTheFileAlone();
    void hostNameOfAMissingFileIsEmpty();
    void hostNameOfAReadOnlyFileIsAFailure();
    void hostNameOfAnUnopenableFileIsAFailure();

    void settingTheHostNameWritesExactlyItsBytes_data();
    void settingTheHostNameWritesExactlyItsBytes();
    void settingTheHostNameMakesTheFile();
    void settingTheHostNameOfAReadOnlyFileFailsAndLeavesIt();
    void settingTheHostNameWhereNothingCanBeWrittenFails();
    void hostNameThatWasSetIsRead();

private:
    NetworkSettings m_settings;
};

void HostNameTest::hostNameIsTheFileWithSimplifiedWhiteSpace_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("hostName");

    QTest::newRow("blanks around it") << QByteArray("  box-1 \n") << "box-1"_s;
    QTest::newRow("nothing around it") << QByteArray("box-1") << "box-1"_s;
    QTest::newRow("blanks within") << QByteArray("my \t box\n") << "my box"_s;
    QTest::newRow("several lines") << QByteArray("one\ntwo\r\nthree\n") << "one two three"_s;
    QTest::newRow("outside ASCII") << QByteArray("k\xc3\xb6k\n") << "k\u00f6k"_s;
    QTest::newRow("only white space") << QByteArray(" \n\t\n") << QString();
    QTest::newRow("empty") << QByteArray() << QString();
}

void HostNameTest::hostNameIsTheFileWithSimplifiedWhiteSpace()
{
    QFETCH(QByteArray, content);
    writeFile(hostNameFile, content);

    QTEST(m_settings.getHostName(), "hostName");
    QCOMPARE(complaints(), QStringList());
}

void HostNameTest::readingTheHostNameLeavesTheFileAlone()
{
    writeFile(hostNameFile, "  box-1 \n");
    m_settings.getHostName();
    QCOMPARE(fileContent(hostNameFile), QByteArray("  box-1 \n"));
}

void HostNameTest::hostNameOfAMissingFileIsEmpty()
{
    QVERIFY(!QFile::exists(hostNameFile));
    QCOMPARE(m_settings.getHostName(), QString());
    QCOMPARE(complaints(), QStringList());
}

void HostNameTest::hostNameOfAReadOnlyFileIsAFailure()
{
    writeFile(hostNameFile, "box-1\n");
    QVERIFY(QFile::setPermissions(hostNameFile, QFile::ReadOwner));

    QCOMPARE(m_settings.getHostName(), QString());
    QCOMPARE(complaints(), QStringList(networkSettingsLine("Failed to open hostname file for reading!"_s)));
}

void HostNameTest::hostNameOfAnUnopenableFileIsAFailure()
{
    QVERIFY(QDir().mkdir(hostNameFile));

    QCOMPARE(m_settings.getHostName(), QString());
    QCOMPARE(complaints(), QStringList(networkSettingsLine("Failed to open hostname file for reading!"_s)));
}

void HostNameTest::settingTheHostNameWritesExactlyItsBytes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("plain") << "abc"_s << QByteArray("abc");
    QTest::newRow("with a line feed") << "abc\n"_s << QByteArray("abc\n");
    QTest::newRow("with blanks") << "  a b "_s << QByteArray("  a b ");
    QTest::newRow("outside ASCII") << "k\u00f6k"_s << QByteArray("k\xc3\xb6k");
    QTest::newRow("no valid host name") << "-/..%1"_s << QByteArray("-/..%1");
    QTest::newRow("empty") << QString() << QByteArray("");
}

void HostNameTest::settingTheHostNameWritesExactlyItsBytes()
{
    QFETCH(QString, name);
    writeFile(hostNameFile, "a much longer name than before\n");

    QVERIFY(m_settings.setHostName(name));
    QTEST(fileContent(hostNameFile), "content");
    QCOMPARE(complaints(), QStringList());
}

void HostNameTest::settingTheHostNameMakesTheFile()
{
    QVERIFY(!QFile::exists(hostNameFile));
    QVERIFY(m_settings.setHostName("abc"_s));
    QCOMPARE(fileContent(hostNameFile), QByteArray("abc"));
}

void HostNameTest::settingTheHostNameOfAReadOnlyFileFailsAndLeavesIt()
{
    writeFile(hostNameFile, "box-1\n");
    QVERIFY(QFile::setPermissions(hostNameFile, QFile::ReadOwner));

    QVERIFY(!m_settings.setHostName("abc"_s));
    QCOMPARE(complaints(), QStringList(networkSettingsLine("Failed to open hostname file for writing!"_s)));
    QCOMPARE(fileContent(hostNameFile), QByteArray("box-1\n"));
}

void HostNameTest::settingTheHostNameWhereNothingCanBeWrittenFails()
{
    QVERIFY(QDir().mkdir(hostNameFile));

    QVERIFY(!m_settings.setHostName("abc"_s));
    QCOMPARE(complaints(), QStringList(networkSettingsLine("Failed to open hostname file for writing!"_s)));
}

void HostNameTest::hostNameThatWasSetIsRead()
{
    QVERIFY(m_settings.setHostName("box-2"_s));
    QCOMPARE(m_settings.getHostName(), "box-2"_s);
}

static const Suite<HostNameTest> hostNameTest;
#include "HostNameTest.moc"
