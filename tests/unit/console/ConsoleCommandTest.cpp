// Which words a console command takes.
#include "Command.h"
#include <QtTest>

class ConsoleCommandTest : public QObject
{
    Q_OBJECT
private slots:
    void takesTheWordsOfItsForm_data();
    void takesTheWordsOfItsForm();
    void usageNamesCommandAndForm();
};

void ConsoleCommandTest::takesTheWordsOfItsForm_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<bool>("taken");

    const auto row = [](const char *name, const char *form, const char *words, bool taken) {
        QTest::newRow(name) << QString::fromLatin1(form)
                            << QString::fromLatin1(words).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                            << taken;
    };
    row("none for no form", "", "", true);
    row("one too many for no form", "", "a", false);
    row("one for one", "NETWORK", "a", true);
    row("none for one", "NETWORK", "", false);
    row("two for one", "NETWORK", "a b", false);
    row("optional word left out", "NETWORK [PIN]", "a", true);
    row("optional word given", "NETWORK [PIN]", "a 1", true);
    row("more than the optional word", "NETWORK [PIN]", "a 1 2", false);
    row("one of a list", "NETWORK SERVER...", "a 1", true);
    row("many of a list", "NETWORK SERVER...", "a 1 2 3", true);
    row("nothing of a list", "NETWORK SERVER...", "a", false);
    row("first alternative", "on|off", "on", true);
    row("last alternative", "on|off", "off", true);
    row("no alternative", "on|off", "o", false);
    row("alternative in capitals", "on|off", "ON", false);
    row("alternative behind a word", "SSID in|out", "a in", true);
    row("no alternative behind a word", "SSID in|out", "a on", false);
    row("a word that stands for itself", "NETWORK none", "a none", true);
    row("another word in its place", "NETWORK none", "a 1.1.1.1", false);
}

void ConsoleCommandTest::takesTheWordsOfItsForm()
{
    QFETCH(const QString, form);
    QFETCH(const QStringList, words);
    const Command command{QStringLiteral("name"), form, {}, {}};
    QTEST(command.fits(words), "taken");
}

void ConsoleCommandTest::usageNamesCommandAndForm()
{
    const Command withForm{QStringLiteral("cable"), QStringLiteral("in|out"), {}, {}};
    const Command without{QStringLiteral("list"), {}, {}, {}};
    QCOMPARE(withForm.usage(), QStringLiteral("cable in|out"));
    QCOMPARE(without.usage(), QStringLiteral("list"));
}

QTEST_GUILESS_MAIN(ConsoleCommandTest)
#include "ConsoleCommandTest.moc"
