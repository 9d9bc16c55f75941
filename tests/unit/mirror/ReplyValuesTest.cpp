// What of ConnMan's values can stand in a reply.

#include "ReplyValues.h"
#include "LogCapture.h"
#include "Loopback.h"
#include "Suite.h"
#include "Text.h"

#include <QDBusSignature>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QLoggingCategory>
#include <QPoint>
#include <QTest>

#include <malloc.h>
#include <unistd.h>

using ReplyValues::Place;

namespace {

const QString Key = "Key"_s;
constexpr int MaxDepth = 64;

QVariant nested(int depth)
{
    QVariant value = 7;
    for (int level = 0; level < depth; ++level) {
        value = QVariant::fromValue(QDBusVariant(value));
    }
    return value;
}

/// A dictionary with a dictionary, and so on, three containers each.
QVariant nestedMaps(int depth)
{
    QVariant value = 7;
    for (int level = 0; level < depth; ++level) {
        value = QVariantMap{{Key, value}};
    }
    return value;
}

std::size_t bytesInUse()
{
    return mallinfo2().uordblks;
}

} // namespace

class ReplyValuesTest : public QObject
{
    Q_OBJECT

private slots:
    void valueIsSentOrLeftOut_data();
    void valueIsSentOrLeftOut();
    void othersAreSent();
    void nothingIsKeptOfAReceivedValue_data();
    void nothingIsKeptOfAReceivedValue();
};

void ReplyValuesTest::valueIsSentOrLeftOut_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("isSent");
    const int room = MaxDepth - static_cast<int>(Place::InReply);

    QTest::newRow("text") << QVariant(Key) << true;
    QTest::newRow("as deep as there is room") << nested(room) << true;
    QTest::newRow("one deeper") << nested(room + 1) << false;
    QTest::newRow("dictionaries as deep as there is room") << nestedMaps(room / 3) << true;
    QTest::newRow("one dictionary deeper") << nestedMaps(room / 3 + 1) << false;
    QTest::newRow("list at the bottom") << QVariant(QVariantMap{{Key, QStringList(Key)}}) << true;
    QTest::newRow("signature") << QVariant::fromValue(QDBusSignature("a{sv}"_s)) << true;
    QTest::newRow("empty signature") << QVariant::fromValue(QDBusSignature()) << false;
    QTest::newRow("empty signature inside")
        << QVariant(
               QVariantMap{{Key, QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusSignature())))}})
        << false;
    QTest::newRow("descriptor") << QVariant::fromValue(QDBusUnixFileDescriptor(STDIN_FILENO)) << false;
}

void ReplyValuesTest::valueIsSentOrLeftOut()
{
    QFETCH(QVariant, value);
    QFETCH(bool, isSent);
    QLoggingCategory::setFilterRules("NetworkManager.warning=true"_s);
    const test_support::LogCapture log;
    QCOMPARE(ReplyValues::sendable({{Key, value}}, Place::InReply).contains(Key), isSent);
    const QStringList line{"Left out of the reply, the bus would not take it: \"Key\""_s};
    QCOMPARE(log.lines("NetworkManager"_s, QtWarningMsg), isSent ? QStringList() : line);
}

void ReplyValuesTest::othersAreSent()
{
    const QVariantMap values{{"Bad"_s, QVariant::fromValue(QDBusSignature())}, {"Good"_s, 7}};
    const QVariantMap sent = ReplyValues::sendable(values, Place::InReply);
    QCOMPARE(sent.keys(), {"Good"_s});
}

void ReplyValuesTest::nothingIsKeptOfAReceivedValue_data()
{
    QTest::addColumn<QVariant>("sent");
    QTest::newRow("dictionary") << QVariant(QVariantMap{{Key, Key}});
    QTest::newRow("array") << QVariant(QVariantList{Key, 7});
    QTest::newRow("structure") << QVariant(QPoint(1, 2));
}

void ReplyValuesTest::nothingIsKeptOfAReceivedValue()
{
    QFETCH(QVariant, sent);
    constexpr int times = 1000;
    // Of the allocator. Qt's D-Bus thread takes some of its own meanwhile.
    constexpr std::size_t smallestBlock = 32;
    Loopback loopback;
    const QVariantMap values{{Key, loopback.variantContent(sent)}};
    QCOMPARE(ReplyValues::sendable(values, Place::InReply), values);
    const std::size_t before = bytesInUse();
    for (int time = 0; time < times; ++time) {
        ReplyValues::sendable(values, Place::InReply);
    }
    QVERIFY2(bytesInUse() < before + smallestBlock * times, "something is lost each time");
}

static const Suite<ReplyValuesTest> replyValuesTest;
#include "ReplyValuesTest.moc"
