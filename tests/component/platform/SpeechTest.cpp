#include "FakeSpeechService.h"
#include "LogCapture.h"
#include "PrivateBus.h"
#include "Suite.h"
#include "Text.h"
#include <libspeech/Speech.h>
#include <libspeech/SpeechKeys.h>
#include <libtactora/Singleton.h>

#include <memory>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

using libspeech::detail::Speech;
using test_support::LogCapture;
using test_support::PrivateBus;

namespace {

QVariantMap sampleRequest()
{
    return {{libspeech::ServiceId, 4}, {libspeech::SentenceId, 7}};
}

QString textOf(QUuid id)
{
    return id.toString(QUuid::WithoutBraces);
}

} // namespace

class SpeechTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void requestGoesOutAsTheServiceKnowsIt();
    void idOnTheBusIsTheOneReturnedWithoutBraces();
    void valuesKeepTheirTypes();
    void eachRequestHasAnIdOfItsOwn();
    void nothingIsSentWithoutTheService();
    void serviceThatWasThereFirstIsSpokenToAtOnce();
    void serviceThatComesLaterIsSpokenTo();
    void serviceThatHasJustComeIsSpokenToBeforeTheEventLoopRuns();
    void serviceThatHasJustGoneIsNotSpokenTo();
    void serviceThatWentIsNotSpokenTo();
    void serviceThatCrashedIsNotSpokenTo();
    void requestDoesNotWaitForTheService();
    void hangingServiceHoldsNothingUp();
    void failedRequestIsLogged();
    void requestThatTheServiceTakesDownWithItIsLogged();
    void answeredRequestIsNotLogged();
    void speechCanBeTheSingleInstance();
    void lostBusIsQuietlyBorne();

private:
    void letTheBusCatchUp();

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<FakeSpeechService> m_service;
    std::unique_ptr<LogCapture> m_log;
};

void SpeechTest::initTestCase()
{
    m_bus = std::make_unique<PrivateBus>();
    QVERIFY(m_bus->isRunning());
    QVERIFY(QDBusConnection::systemBus().isConnected());
}

void SpeechTest::init()
{
    m_service = std::make_unique<FakeSpeechService>(m_bus->address());
    m_log = std::make_unique<LogCapture>();
}

void SpeechTest::cleanup()
{
    m_log.reset();
    m_service.reset();
}

// What had been sent on the system bus has come back, be it a signal or the answer of an error.
void SpeechTest::letTheBusCatchUp()
{
    const QDBusMessage ping = QDBusMessage::createMethodCall(
        "org.freedesktop.DBus"_s, "/org/freedesktop/DBus"_s, "org.freedesktop.DBus"_s, "GetId"_s);
    const QDBusPendingCallWatcher answer(QDBusConnection::systemBus().asyncCall(ping));
    QSignalSpy answered(&answer, &QDBusPendingCallWatcher::finished);
    QVERIFY(answered.wait());
}

void SpeechTest::requestGoesOutAsTheServiceKnowsIt()
{
    QVERIFY(m_service->start());
    Speech speech;
    speech.speakFromId(sampleRequest());
    QTRY_COMPARE(m_service->requests.size(), 1);
    const QDBusMessage &message = m_service->requests.constFirst();
    QCOMPARE(message.type(), QDBusMessage::MethodCallMessage);
    QCOMPARE(message.path(), "/"_s);
    QCOMPARE(message.interface(), FakeSpeechService::name());
    QCOMPARE(message.member(), "speakFromId"_s);
    QCOMPARE(message.signature(), "sa{sv}"_s);
}

void SpeechTest::idOnTheBusIsTheOneReturnedWithoutBraces()
{
    QVERIFY(m_service->start());
    Speech speech;
    const QUuid id = speech.speakFromId(sampleRequest());
    QVERIFY(!id.isNull());
    QTRY_COMPARE(m_service->requests.size(), 1);
    const QString sent = m_service->requests.constFirst().arguments().constFirst().toString();
    QCOMPARE(sent, textOf(id));
    QCOMPARE(sent.size(), 36);
}

void SpeechTest::valuesKeepTheirTypes()
{
    QVERIFY(m_service->start());
    Speech speech;
    QVariantMap request = sampleRequest();
    request.insert(libspeech::Arguments, QStringList{"10"_s, "5"_s});
    speech.speakFromId(request);
    QTRY_COMPARE(m_service->requests.size(), 1);
    const auto sent = qdbus_cast<QVariantMap>(m_service->requests.constFirst().arguments().at(1));
    QCOMPARE(sent, request);
    QCOMPARE(sent.value(libspeech::ServiceId).userType(), static_cast<int>(QMetaType::Int));
    QCOMPARE(sent.value(libspeech::Arguments).userType(), static_cast<int>(QMetaType::QStringList));
}

void SpeechTest::eachRequestHasAnIdOfItsOwn()
{
    QVERIFY(m_service->start());
    Speech speech;
    QVERIFY(speech.speakFromId(sampleRequest()) != speech.speakFromId(sampleRequest()));
    QTRY_COMPARE(m_service->requests.size(), 2);
}

// A call to a name without an owner would come back as an error, and be logged.
void SpeechTest::nothingIsSentWithoutTheService()
{
    Speech speech;
    QVERIFY(speech.speakFromId(sampleRequest()).isNull());
    letTheBusCatchUp();
    QVERIFY(speech.speakFromId(sampleRequest()).isNull());
    letTheBusCatchUp();
    QVERIFY(m_service->requests.isEmpty());
    QCOMPARE(m_log->takeCriticals(), QStringList());
}

void SpeechTest::serviceThatWasThereFirstIsSpokenToAtOnce()
{
    QVERIFY(m_service->start());
    QVERIFY(!Speech().speakFromId(sampleRequest()).isNull());
    QTRY_COMPARE(m_service->requests.size(), 1);
}

void SpeechTest::serviceThatComesLaterIsSpokenTo()
{
    Speech speech;
    letTheBusCatchUp();
    QVERIFY(speech.speakFromId(sampleRequest()).isNull());
    QVERIFY(m_service->start());
    letTheBusCatchUp();
    QVERIFY(!speech.speakFromId(sampleRequest()).isNull());
    QTRY_COMPARE(m_service->requests.size(), 1);
}

void SpeechTest::serviceThatHasJustComeIsSpokenToBeforeTheEventLoopRuns()
{
    Speech speech;
    letTheBusCatchUp();
    QVERIFY(m_service->start());
    QVERIFY(!speech.speakFromId(sampleRequest()).isNull());
    QTRY_COMPARE(m_service->requests.size(), 1);
}

void SpeechTest::serviceThatHasJustGoneIsNotSpokenTo()
{
    QVERIFY(m_service->start());
    Speech speech;
    QVERIFY(!speech.speakFromId(sampleRequest()).isNull());
    letTheBusCatchUp();
    QVERIFY(m_service->stop());
    QVERIFY(speech.speakFromId(sampleRequest()).isNull());
}

void SpeechTest::serviceThatWentIsNotSpokenTo()
{
    QVERIFY(m_service->start());
    Speech speech;
    QVERIFY(!speech.speakFromId(sampleRequest()).isNull());
    QTRY_COMPARE(m_service->requests.size(), 1);
    QVERIFY(m_service->stop());
    letTheBusCatchUp();
    QVERIFY(speech.speakFromId(sampleRequest()).isNull());
    letTheBusCatchUp();
    QCOMPARE(m_log->takeCriticals(), QStringList());
}

void SpeechTest::serviceThatCrashedIsNotSpokenTo()
{
    QVERIFY(m_service->start());
    Speech speech;
    QVERIFY(!speech.speakFromId(sampleRequest()).isNull());
    QTRY_COMPARE(m_service->requests.size(), 1);
    m_service->crash();
    QTRY_VERIFY(speech.speakFromId(sampleRequest()).isNull());
}

// The service lives in this very thread: waiting for it would never end.
void SpeechTest::requestDoesNotWaitForTheService()
{
    QVERIFY(m_service->start());
    Speech speech;
    QVERIFY(!speech.speakFromId(sampleRequest()).isNull());
    QVERIFY(m_service->requests.isEmpty());
    QTRY_COMPARE(m_service->requests.size(), 1);
}

void SpeechTest::hangingServiceHoldsNothingUp()
{
    m_service->manner = FakeSpeechService::Manner::Hanging;
    QVERIFY(m_service->start());
    Speech speech;
    for (int time = 0; time < 3; ++time) {
        QVERIFY(!speech.speakFromId(sampleRequest()).isNull());
    }
    QTRY_COMPARE(m_service->requests.size(), 3);
}

void SpeechTest::failedRequestIsLogged()
{
    m_service->manner = FakeSpeechService::Manner::Failing;
    QVERIFY(m_service->start());
    Speech speech;
    const QUuid id = speech.speakFromId(sampleRequest());
    QVERIFY(!id.isNull());
    const QString line = "Speech request \"%1\" failed: \"out of breath\""_s.arg(textOf(id));
    QTRY_COMPARE(m_log->lines("libspeech"_s, QtCriticalMsg), QStringList{line});
}

void SpeechTest::requestThatTheServiceTakesDownWithItIsLogged()
{
    m_service->manner = FakeSpeechService::Manner::Hanging;
    QVERIFY(m_service->start());
    Speech speech;
    speech.speakFromId(sampleRequest());
    QTRY_COMPARE(m_service->requests.size(), 1);
    m_service->crash();
    QTRY_COMPARE(m_log->lines("libspeech"_s, QtCriticalMsg).size(), 1);
}

void SpeechTest::answeredRequestIsNotLogged()
{
    QVERIFY(m_service->start());
    Speech speech;
    speech.speakFromId(sampleRequest());
    QTRY_COMPARE(m_service->requests.size(), 1);
    letTheBusCatchUp();
    QVERIFY(m_log->messages().isEmpty());
}

void SpeechTest::speechCanBeTheSingleInstance()
{
    QVERIFY(m_service->start());
    QVERIFY(!libtactora::Singleton<Speech>::instance()->speakFromId(sampleRequest()).isNull());
    QTRY_COMPARE(m_service->requests.size(), 1);
}

// Last: the process has no other system bus.
void SpeechTest::lostBusIsQuietlyBorne()
{
    QVERIFY(m_service->start());
    Speech speech;
    QVERIFY(!speech.speakFromId(sampleRequest()).isNull());
    QTRY_COMPARE(m_service->requests.size(), 1);
    letTheBusCatchUp();
    m_bus->stop();
    QTRY_VERIFY(!QDBusConnection::systemBus().isConnected());
    QVERIFY(speech.speakFromId(sampleRequest()).isNull());
    QVERIFY(Speech().speakFromId(sampleRequest()).isNull());
    QCOMPARE(m_log->takeCriticals(), QStringList());
}

static const Suite<SpeechTest> speechTest;
#include "SpeechTest.moc"
