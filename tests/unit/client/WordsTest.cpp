// How a line is divided into words.
#include "Words.h"
#include "Suite.h"
#include "Text.h"
#include <QTest>

class WordsTest : public QObject
{
    Q_OBJECT
private slots:
    void lineIsDividedAsByAShell_data();
    void lineIsDividedAsByAShell();
    void unfinishedLineHasNoWords_data();
    void unfinishedLineHasNoWords();
    void escapedWordIsReadBack_data();
    void escapedWordIsReadBack();
};

void WordsTest::lineIsDividedAsByAShell_data()
{
    QTest::addColumn<QStringList>("words");
    const auto row = [](const char *line, const QStringList &words) { QTest::newRow(line) << words; };
    row("", {});
    row("  \t ", {});
    row("connect Kitchen", {"connect"_s, "Kitchen"_s});
    row("  connect   Kitchen  ", {"connect"_s, "Kitchen"_s});
    row("connect \"sweet potato\"", {"connect"_s, "sweet potato"_s});
    row("connect 'sweet potato'", {"connect"_s, "sweet potato"_s});
    row("connect sweet\\ potato", {"connect"_s, "sweet potato"_s});
    row("a''b", {"ab"_s});
    row("a'b c'\"d e\"", {"ab cd e"_s});
    row("''", {""_s});
    row("\"\" x", {""_s, "x"_s});
    row("\"it's\"", {"it's"_s});
    row("'say \"so\"'", {"say \"so\""_s});
    row("\"say \\\"so\\\"\"", {"say \"so\""_s});
    row("\"back\\\\slash\"", {"back\\slash"_s});
    row("\"a\\b\"", {"a\\b"_s});
    row("'a\\'", {"a\\"_s});
    row("\\'", {"'"_s});
    row("K\xc3\xbc"
        "che",
        {"K\u00fcche"_s});
}

void WordsTest::lineIsDividedAsByAShell()
{
    const std::optional<QStringList> words = splitWords(QString::fromUtf8(QTest::currentDataTag()));
    QVERIFY(words);
    QTEST(*words, "words");
}

void WordsTest::unfinishedLineHasNoWords_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("double quote") << "connect \"sweet"_s;
    QTest::newRow("single quote") << "connect 'sweet"_s;
    QTest::newRow("backslash") << "connect sweet\\"_s;
}

void WordsTest::unfinishedLineHasNoWords()
{
    QFETCH(const QString, line);
    QVERIFY(!splitWords(line));
}

void WordsTest::escapedWordIsReadBack_data()
{
    QTest::addColumn<QString>("word");
    for (const char *word :
         {"plain", "sweet potato", "it's", "say \"so\"", "back\\slash", "", " ", "'\"\\"}) {
        QTest::newRow(word) << QString::fromUtf8(word);
    }
}

void WordsTest::escapedWordIsReadBack()
{
    QFETCH(const QString, word);
    QCOMPARE(splitWords(escapedWord(word)), std::make_optional(QStringList{word}));
}

static const Suite<WordsTest> wordsTest;
#include "WordsTest.moc"
