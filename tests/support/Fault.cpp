#include "Fault.h"

#include "SimulatorClient.h"
#include "Text.h"
#include <QTest>
#include <utility>

namespace test_support {

FaultKind::FaultKind(const QString &kind, QVariantMap details)
    : m_map(std::move(details))
{
    m_map.insert("kind"_s, kind);
}

FaultKind FaultKind::error(const QString &name, const QString &message)
{
    return FaultKind("error"_s, {{"name"_s, name}, {"message"_s, message}});
}

FaultKind FaultKind::reply(const QVariantList &arguments)
{
    return FaultKind("reply"_s, {{"arguments"_s, arguments}});
}

FaultKind FaultKind::delay(int milliseconds)
{
    return FaultKind("delay"_s, {{"milliseconds"_s, milliseconds}});
}

FaultKind FaultKind::after(int milliseconds) const
{
    FaultKind late(*this);
    late.m_map.insert("milliseconds"_s, milliseconds);
    return late;
}

FaultKind FaultKind::never()
{
    return FaultKind("never"_s);
}

FaultKind FaultKind::vanish()
{
    return FaultKind("vanish"_s);
}

Fault::Fault(SimulatorClient &client, uint id, QString description)
    : m_client(&client)
    , m_id(id)
    , m_description(std::move(description))
{
}

Fault::Fault(Fault &&other) noexcept
    : m_client(std::exchange(other.m_client, nullptr))
    , m_id(other.m_id)
    , m_description(std::move(other.m_description))
{
}

Fault::~Fault()
{
    verify();
}

uint Fault::fired() const
{
    return m_client != nullptr ? m_client->faultFired(m_id) : 0;
}

void Fault::verify()
{
    if (m_client != nullptr) {
        const QByteArray complaint = ("The fault never fired: "_s + m_description).toUtf8();
        QTest::qVerify(fired() > 0, "fired() > 0", complaint.constData(), __FILE__, __LINE__);
    }
    m_client = nullptr;
}

} // namespace test_support
