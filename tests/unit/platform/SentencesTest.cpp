#include "Suite.h"
#include "Text.h"

#include <libspeech/SpeechKeys.h>
#include <libtranslation/Sid.h>

#include <QTest>

using Sentence = libtranslation::Sid::NetworkManager;

/// The numbers and words that the speech service knows.
class SentencesTest : public QObject
{
    Q_OBJECT

private slots:
    void sentencesHaveTheNumbersOfTheTranslationFiles_data();
    void sentencesHaveTheNumbersOfTheTranslationFiles();
    void requestKeysAreSpeltAsTheServiceReadsThem_data();
    void requestKeysAreSpeltAsTheServiceReadsThem();
};

Q_DECLARE_METATYPE(Sentence)

void SentencesTest::sentencesHaveTheNumbersOfTheTranslationFiles_data()
{
    QTest::addColumn<Sentence>("sentence");
    QTest::addColumn<int>("number");
    QTest::newRow("IPv4 address") << Sentence::EthernetIpv4Address << 0;
    QTest::newRow("IPv6 address") << Sentence::EthernetIpv6Address << 1;
    QTest::newRow("Wi-Fi off") << Sentence::WifiSwitchingOff << 2;
    QTest::newRow("Wi-Fi on") << Sentence::WifiSwitchingOn << 3;
    QTest::newRow("switch failed") << Sentence::WifiSwitchFailed << 4;
    QTest::newRow("connection failed") << Sentence::ConnectionFailed << 5;
    QTest::newRow("connected") << Sentence::Connected << 6;
    QTest::newRow("reconnected") << Sentence::WifiReconnected << 7;
    QTest::newRow("no address") << Sentence::EthernetNoAddress << 8;
}

void SentencesTest::sentencesHaveTheNumbersOfTheTranslationFiles()
{
    QFETCH(Sentence, sentence);
    QFETCH(int, number);
    QCOMPARE(static_cast<int>(sentence), number);
}

void SentencesTest::requestKeysAreSpeltAsTheServiceReadsThem_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("spelling");
    QTest::newRow("Cancel") << QString(libspeech::Cancel) << "cancel"_s;
    QTest::newRow("Context") << QString(libspeech::Context) << "context"_s;
    QTest::newRow("Sentence") << QString(libspeech::Sentence) << "sentence"_s;
    QTest::newRow("SentenceId") << QString(libspeech::SentenceId) << "sentenceId"_s;
    QTest::newRow("ServiceId") << QString(libspeech::ServiceId) << "serviceId"_s;
    QTest::newRow("Text") << QString(libspeech::Text) << "text"_s;
    QTest::newRow("TranslationFile") << QString(libspeech::TranslationFile) << "translationFile"_s;
    QTest::newRow("Arguments") << QString(libspeech::Arguments) << "arguments"_s;
    QTest::newRow("Translate") << QString(libspeech::Translate) << "translate"_s;
}

void SentencesTest::requestKeysAreSpeltAsTheServiceReadsThem()
{
    QFETCH(QString, key);
    QTEST(key, "spelling");
}

static const Suite<SentencesTest> sentencesTest;
#include "SentencesTest.moc"
