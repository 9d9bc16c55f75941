#pragma once

#include "Service.h"
#include <optional>

namespace simulator {

class Addressing;
class Connector;
class ServiceList;
class ServiceStates;

/// What a client may set of a service: the checks ConnMan makes and what follows from a change.
class ServiceSettings
{
public:
    ServiceSettings(ServiceList &services, ServiceStates &states, Addressing &addressing,
                    Connector &connector);

    /// Nothing when the property has been set, otherwise why not.
    std::optional<ErrorReply> set(const ServicePtr &service, const QString &property, const QVariant &value);

private:
    std::optional<ErrorReply> setAutoConnect(const ServicePtr &service, const QVariant &value);
    std::optional<ErrorReply> setNameservers(const ServicePtr &service, const QVariant &value);
    std::optional<ErrorReply> setStrings(const ServicePtr &service, const QString &property,
                                         const QVariant &value);
    std::optional<ErrorReply> setProxy(const ServicePtr &service, const QVariant &value);
    std::optional<ErrorReply> setMdns(const ServicePtr &service, const QVariant &value);
    std::optional<ErrorReply> setIpv4(const ServicePtr &service, const QVariant &value);
    std::optional<ErrorReply> setIpv6(const ServicePtr &service, const QVariant &value);

    ServiceList &m_services;
    ServiceStates &m_states;
    Addressing &m_addressing;
    Connector &m_connector;
};

} // namespace simulator
