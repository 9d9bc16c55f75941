#include "Suite.h"

#include <libtactora/Singleton.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <QTest>
#include <set>
#include <thread>
#include <vector>

using libtactora::Singleton;

namespace {

std::atomic<int> made = 0;
std::atomic<int> destructed = 0;

/// Takes its time to be made, so that whoever may come in as well does.
class Counted
{
public:
    Counted()
    {
        static std::mutex mutex;
        static std::condition_variable anotherIsMade;
        ++made;
        std::unique_lock lock(mutex);
        anotherIsMade.notify_all();
        anotherIsMade.wait_for(lock, std::chrono::milliseconds(200), [] { return made > 1; });
    }
    ~Counted() { ++destructed; }
    Counted(const Counted &) = delete;
    Counted &operator=(const Counted &) = delete;
};

class Other
{
};

class WithParent : public QObject
{
public:
    explicit WithParent(QObject *parent)
        : QObject(parent)
    {
    }
};

class WithOptionalParent : public QObject
{
public:
    explicit WithOptionalParent(QObject *parent = nullptr)
        : QObject(parent)
    {
    }
};

class Nested
{
public:
    Nested()
        : other(Singleton<Other>::instance())
    {
    }
    Other *other;
};

/// Lets threads wait for each other, so that they all start at once.
class StartingLine
{
public:
    explicit StartingLine(int runners)
        : m_missing(runners)
    {
    }
    void waitForAll()
    {
        std::unique_lock lock(m_mutex);
        --m_missing;
        m_arrived.notify_all();
        m_arrived.wait(lock, [this] { return m_missing == 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_arrived;
    int m_missing;
};

// Comes after the destructors of everything static that is made later, and so has the last word.
void failIfDestructed()
{
    if (destructed != 0) {
        std::fputs("FAIL!  : the single instance was destroyed at exit\n", stderr);
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace

class SingletonTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void manyThreadsAtOnceMakeOneInstance();
    void laterCallsGiveTheSameInstance();
    void typesHaveInstancesOfTheirOwn();
    void typeThatNeedsAParentGetsNone();
    void typeWithAnOptionalParentGetsNone();
    void constructorMayAskForAnotherInstance();
};

void SingletonTest::initTestCase()
{
    QCOMPARE(std::atexit(failIfDestructed), 0);
}

void SingletonTest::manyThreadsAtOnceMakeOneInstance()
{
    constexpr int runners = 16;
    StartingLine line(runners);
    std::mutex mutex;
    std::set<Counted *> seen;
    std::vector<std::thread> threads;
    threads.reserve(runners);
    for (int runner = 0; runner < runners; ++runner) {
        threads.emplace_back([&] {
            line.waitForAll();
            Counted *instance = Singleton<Counted>::instance();
            const std::lock_guard lock(mutex);
            seen.insert(instance);
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    QCOMPARE(made.load(), 1);
    QCOMPARE(seen.size(), 1U);
    QVERIFY(*seen.cbegin() != nullptr);
}

void SingletonTest::laterCallsGiveTheSameInstance()
{
    QCOMPARE(Singleton<Counted>::instance(), Singleton<Counted>::instance());
    QCOMPARE(made.load(), 1);
}

void SingletonTest::typesHaveInstancesOfTheirOwn()
{
    QVERIFY(static_cast<void *>(Singleton<Counted>::instance()) !=
            static_cast<void *>(Singleton<Other>::instance()));
}

void SingletonTest::typeThatNeedsAParentGetsNone()
{
    QCOMPARE(Singleton<WithParent>::instance()->parent(), nullptr);
}

void SingletonTest::typeWithAnOptionalParentGetsNone()
{
    QCOMPARE(Singleton<WithOptionalParent>::instance()->parent(), nullptr);
}

void SingletonTest::constructorMayAskForAnotherInstance()
{
    QCOMPARE(Singleton<Nested>::instance()->other, Singleton<Other>::instance());
}

static const Suite<SingletonTest> singletonTest;
#include "SingletonTest.moc"
