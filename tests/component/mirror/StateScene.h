#pragma once

#include "ConnmanFixture.h"
#include "MirrorNames.h"

#include <QSignalSpy>

// What the tests of a service's state have in common.

/// A service whose state is followed from `word` on, and what it says of itself from then on.
struct StateScene
{
    StateScene(test_support::ConnmanFixture &fixture, const QString &word)
        : service(test_support::ConnmanFixture::connection(),
                  fixture.addService(Identifier, {{StateKey, word}}), nullptr)
    {
        service.serviceChanged();
        fixture.connman().clearCalls();
        changes.clear();
    }

    QVector<State> states() const
    {
        QVector<State> result;
        for (const QVariantList &arguments : changes) {
            result << arguments.constFirst().value<State>();
        }
        return result;
    }

    ConnmanService service;
    QSignalSpy changes{&service, &ConnmanService::stateChanged};
};

/// ConnMan moves the service to another state and tells so.
inline void changeState(test_support::ConnmanFixture &fixture, const QString &word)
{
    fixture.connman().setServiceProperty(Identifier, StateKey, word);
    fixture.deliver();
}
