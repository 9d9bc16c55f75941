#pragma once

#include "BusName.h"
#include "PrivateBus.h"
#include "Text.h"
#include <libtactora/DBusService.h>

#include <memory>
#include <QObject>
#include <QStringList>

/// What a watcher reports, in order.
class DBusServiceReport : public QObject
{
    Q_OBJECT

public:
    explicit DBusServiceReport(const libtactora::DBusService &service)
    {
        QObject::connect(&service, &libtactora::DBusService::connected, this,
                         [this] { lines.append("connected"_s); });
        QObject::connect(&service, &libtactora::DBusService::disconnected, this,
                         [this] { lines.append("disconnected"_s); });
    }

    QStringList lines;
};

/// Every test begins with a bus of its own, a program that watches a name there and one that may own it.
class DBusServiceFixture : public QObject
{
    Q_OBJECT

protected:
    static QString watchedName() { return "net.connman"_s; }
    std::unique_ptr<libtactora::DBusService> watch();
    void waitUntilAllIsTold();
    void waitUntilWatching();

    std::unique_ptr<test_support::PrivateBus> m_bus;
    std::unique_ptr<BusName> m_watching;
    std::unique_ptr<BusName> m_connman;

private slots:
    void init();
    void cleanup();
};
