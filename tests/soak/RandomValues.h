#pragma once

#include <QByteArray>
#include <QRandomGenerator>

#include <array>
#include <glib.h>

namespace soak {

/// Values as any peer may put on the wire, right and wrong. Every GVariant returned is floating: whoever puts
/// it into a message owns it.
class RandomValues
{
public:
    explicit RandomValues(quint32 seed);

    /// From 0 to below `end`.
    int below(int end) { return m_random.bounded(end); }
    bool oneIn(int chances) { return below(chances) == 0; }

    /// A message's arguments of these types (a D-Bus signature).
    GVariant *arguments(const QByteArray &signature);
    /// Of any types, among a few combinations that the seed determines: Qt remembers each one that it was
    /// ever called with, and that is no growth of the daemon's.
    GVariant *anyArguments();
    /// One value of any type.
    GVariant *any();
    /// A value inside that many variants.
    static GVariant *nested(int variants);
    /// An address configuration with that method.
    static GVariant *dictionaryWith(GVariant *method);

    QByteArray text();
    /// The object path of one of a few services.
    QByteArray servicePath();
    /// That of a service, a technology, the manager, or one where ConnMan has nothing.
    QByteArray path();
    QByteArray propertyName();
    /// What ConnMan might say a property has.
    GVariant *propertyValue();
    GVariant *properties();
    /// The arguments of a "ServicesChanged" of the right types.
    GVariant *servicesChanged();
    /// The same, with which every service goes.
    static GVariant *allServicesGone();
    GVariant *serviceList();
    /// What an agent is asked.
    GVariant *requestedFields();

private:
    GVariant *of(const GVariantType *type);
    GVariant *basic(const GVariantType *type);
    GVariant *number(char type);
    GVariant *container(const GVariantType *type);
    QByteArray garbage();

    QByteArray anySignature();

    QRandomGenerator m_random;
    std::array<QByteArray, 64> m_signatures;
    int m_depth = 0;
};

} // namespace soak
