// Which words a command takes.
#include "Command.h"
#include "Suite.h"
#include "Text.h"
#include <QTest>

class CommandTest : public QObject
{
    Q_OBJECT
private slots:
    void takesTheWordsOfItsForm_data();
    void takesTheWordsOfItsForm();
    void usageNamesCommandAndForm();
    void firstFormThatFitsIsMeant();
    void formsAreToldWhereNoneFits();
    void continuationsFollowTheForms_data();
    void continuationsFollowTheForms();
    void networksAreAskedForOnlyWhereOneBelongs();
};

namespace {

QVector<Command> someCommands()
{
    return {command("list", "", "", {}), command("lock", "on|off", "", {}),
            command("address", "NETWORK", "", {}), command("address", "NETWORK dhcp|off", "", {}),
            command("address", "NETWORK manual ADDRESS", "", {})};
}

} // namespace

void CommandTest::takesTheWordsOfItsForm_data()
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

void CommandTest::takesTheWordsOfItsForm()
{
    QFETCH(const QString, form);
    QFETCH(const QStringList, words);
    const Command command{"name"_s, form, {}, {}};
    QTEST(command.fits(words), "taken");
}

void CommandTest::usageNamesCommandAndForm()
{
    const Command withForm{"cable"_s, "in|out"_s, {}, {}};
    const Command without{"list"_s, {}, {}, {}};
    QCOMPARE(withForm.usage(), "cable in|out"_s);
    QCOMPARE(without.usage(), "list"_s);
}

void CommandTest::firstFormThatFitsIsMeant()
{
    const QVector<Command> commands = someCommands();
    QCOMPARE(commandMeant(commands, {"address"_s, "a"_s}), &commands.at(2));
    QCOMPARE(commandMeant(commands, {"address"_s, "a"_s, "off"_s}), &commands.at(3));
    QCOMPARE(commandMeant(commands, {"address"_s}), nullptr);
    QCOMPARE(commandMeant(commands, {"other"_s}), nullptr);
    QCOMPARE(commandMeant(commands, {}), nullptr);
}

void CommandTest::formsAreToldWhereNoneFits()
{
    QCOMPARE(notUnderstood(someCommands(), "address"_s),
             "It is: address NETWORK; or: address NETWORK dhcp|off; or: address NETWORK manual ADDRESS"_s);
    QCOMPARE(notUnderstood(someCommands(), "other"_s),
             "There is no command \"other\"; \"help\" lists them."_s);
}

void CommandTest::continuationsFollowTheForms_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("continuations");
    const auto row = [](const char *name, const char *words, const char *continuations) {
        QTest::newRow(name) << QString::fromLatin1(words).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                            << QString::fromLatin1(continuations).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    };
    row("nothing yet", "", "list lock address");
    row("alternatives", "lock", "on off");
    row("nothing behind", "list", "");
    row("no such command", "other", "");
    row("network", "address", "Kitchen Library");
    row("words of several forms", "address Kitchen", "dhcp off manual");
    row("a word that nobody can know", "address Kitchen manual", "");
    row("a form that is ruled out", "address Kitchen dhcp", "");
}

void CommandTest::continuationsFollowTheForms()
{
    QFETCH(const QStringList, words);
    const QStringList networks = {"Kitchen"_s, "Library"_s};
    QTEST(::continuations(someCommands(), words, [&networks] { return networks; }), "continuations");
}

void CommandTest::networksAreAskedForOnlyWhereOneBelongs()
{
    int asked = 0;
    const auto networks = [&asked] {
        ++asked;
        return QStringList();
    };
    ::continuations(someCommands(), {}, networks);
    ::continuations(someCommands(), {"address"_s, "a"_s}, networks);
    QCOMPARE(asked, 0);
    ::continuations(someCommands(), {"address"_s}, networks);
    QCOMPARE(asked, 1);
}

static const Suite<CommandTest> commandTest;
#include "CommandTest.moc"
