// The manual page names what the program itself tells with --help.
#include "ClientProgram.h"
#include "Suite.h"
#include "Text.h"
#include <QFile>
#include <QMap>
#include <QTest>

using namespace test_support;

class ClientManPageTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();

    void everyCommandAndOptionIsExplained_data();
    void everyCommandAndOptionIsExplained();
    void nothingElseIsExplained();

private:
    /// The page's entries: what is explained, and how.
    QMap<QString, QString> m_entries;
    QStringList m_help;
};

void ClientManPageTest::initTestCase()
{
    QFile page(QStringLiteral(MAN_PAGE));
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll()).remove(QLatin1Char('\\'));
    const QString entries =
        text.section(".SH COMMANDS\n"_s, 1).section(".SH EXIT STATUS"_s, 0, 0).remove(".SH OPTIONS\n"_s);
    for (const QString &entry : entries.split(".TP\n"_s, Qt::SkipEmptyParts)) {
        m_entries.insert(entry.section(QLatin1Char('\n'), 0, 0).remove(".B "_s).remove(QLatin1Char('"')),
                         entry.section(QLatin1Char('\n'), 1).trimmed());
    }
    ClientProgram client({"--help"_s});
    QCOMPARE(client.waitForExit(), 0);
    const QString output = client.output();
    m_help = output.section("\n\n"_s, 1, 1).split(QLatin1Char('\n')) +
             output.section("\n\n"_s, 2, 2).trimmed().split(QLatin1Char('\n'));
    for (const char *general :
         {"A NETWORK is told", "What only you know"}) { // sections of their own in the page
        m_help.removeAll(m_help.filter(QString::fromLatin1(general)).value(0));
    }
}

void ClientManPageTest::everyCommandAndOptionIsExplained_data()
{
    QTest::addColumn<QString>("line");
    for (const QString &line : qAsConst(m_help)) {
        QTest::newRow(qUtf8Printable(line)) << line;
    }
}

void ClientManPageTest::everyCommandAndOptionIsExplained()
{
    QFETCH(const QString, line);
    QString explanation = line.section(": "_s, 1);
    explanation.replace(0, 1, explanation.at(0).toUpper());
    if (!explanation.endsWith(QLatin1Char('.'))) {
        explanation += QLatin1Char('.');
    }
    QCOMPARE(m_entries.value(line.section(": "_s, 0, 0)), explanation);
}

void ClientManPageTest::nothingElseIsExplained()
{
    QCOMPARE(m_entries.size(), m_help.size());
}

static const Suite<ClientManPageTest> clientManPageTest;
#include "ClientManPageTest.moc"
