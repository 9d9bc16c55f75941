#include "Air.h"

#include "Command.h"
#include "EventWait.h"
#include "FarEnd.h"
#include "OnTheAir.h"
#include "Text.h"

using test_support::eventually;

namespace {

const QString airDirectory = "/run/vm/air/"_s;

QStringList controlArguments(const QString &accessPoint, const QStringList &command)
{
    return QStringList{"-p"_s, "/run/hostapd"_s, "-i"_s, accessPoint} + command;
}

/// hostapd_cli's exit status says nothing about hostapd's answer.
bool control(const QString &accessPoint, const QStringList &command)
{
    return outputOf("hostapd_cli"_s, controlArguments(accessPoint, command)).contains("OK"_s);
}

bool isOn(const QString &accessPoint)
{
    return outputOf("hostapd_cli"_s, controlArguments(accessPoint, {"status"_s})).contains("state=ENABLED"_s);
}

} // namespace

bool Air::restore()
{
    if (!m_touched) {
        return true;
    }
    control("studio"_s, {"wps_cancel"_s});
    const QStringList always{"home"_s, "cafe"_s, "cellar"_s, "office"_s, "studio"_s};
    for (const QString &accessPoint : always) {
        if (!isOn(accessPoint) && !switchOn(accessPoint)) {
            return false;
        }
    }
    const QString garden = "garden"_s;
    const bool gardenOff = !isOn(garden) || switchOff(garden);
    m_touched = false;
    return gardenOff && serveAddresses(true);
}

bool Air::switchOn(const QString &accessPoint)
{
    m_touched = true;
    return control(accessPoint, {"enable"_s}) && eventually([&] { return isOn(accessPoint); });
}

bool Air::switchOff(const QString &accessPoint)
{
    m_touched = true;
    return control(accessPoint, {"disable"_s}) && eventually([&] { return !isOn(accessPoint); });
}

bool Air::serveAddresses(bool on)
{
    if (on == m_serving) {
        return true;
    }
    m_touched = true;
    m_serving = on;
    if (!on) {
        return FarEnd::killServer(airDirectory + "dnsmasq.pid"_s);
    }
    return FarEnd::runIn("ap"_s, "dnsmasq"_s, {"--conf-file=%1dnsmasq.conf"_s.arg(airDirectory)});
}

bool Air::expectPin(const QString &accessPoint, const QString &pin)
{
    m_touched = true;
    return control(accessPoint, {"wps_pin"_s, "any"_s, pin});
}

bool Air::pressButton(const QString &accessPoint)
{
    m_touched = true;
    return control(accessPoint, {"wps_pbc"_s});
}

bool Air::reaches(const QString &address)
{
    return FarEnd::runIn("ap"_s, "ping"_s, {"-c"_s, "3"_s, "-A"_s, "-W"_s, "5"_s, address});
}

QStringList OnTheAir::stations(const QString &accessPoint)
{
    const QString answer = outputOf("hostapd_cli"_s, controlArguments(accessPoint, {"list_sta"_s}));
    return answer.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
