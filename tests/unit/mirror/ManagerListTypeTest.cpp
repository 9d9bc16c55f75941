// A process of its own: types stay registered for the life of a process.

#include "ConnmanManager.h"

#include "LogCapture.h"
#include "Suite.h"
#include "Text.h"

#include <QDBusMetaType>
#include <QTest>

class ManagerListTypeTest : public QObject
{
    Q_OBJECT

private slots:
    void readingTheServicesRegistersTheListType();
};

void ManagerListTypeTest::readingTheServicesRegistersTheListType()
{
    const test_support::LogCapture log;
    ConnmanManager manager(QDBusConnection("no such connection"_s), nullptr);
    QVERIFY(!manager.updateServices());
    QCOMPARE(QMetaType::type("ConnmanServiceInfoList"), qMetaTypeId<ConnmanServiceInfoList>());
    QCOMPARE(QDBusMetaType::typeToSignature(qMetaTypeId<ConnmanServiceInfoList>()), "a(oa{sv})");
}

static const Suite<ManagerListTypeTest> managerListTypeTest;
#include "ManagerListTypeTest.moc"
