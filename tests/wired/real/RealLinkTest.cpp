#include "Kernel.h"
#include "Scene.h"
#include "Suite.h"
#include "Text.h"

/// What only a real interface can show.
class RealLinkTest : public QObject
{
    Q_OBJECT
private slots:
    void hardwareAddressIsTheInterfacesOwn();
};

void RealLinkTest::hardwareAddressIsTheInterfacesOwn()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QCOMPARE(scene.client.call("getHwAddress", Surroundings::interface()).toString().toLower(),
             kernel::hardwareAddress(Surroundings::interface()));
}

static const Suite<RealLinkTest> realLinkTest;

#include "RealLinkTest.moc"
