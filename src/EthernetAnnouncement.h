#pragma once

#include <QObject>
#include <QTimer>

#include <memory>

class ConnmanService;
class Feedback;

/// Tells the user the address of the Ethernet link once it has one, or after some 32 s that it has none.
class EthernetAnnouncement : public QObject
{
    Q_OBJECT

public:
    /// `feedback` must outlive it.
    EthernetAnnouncement(Feedback &feedback, QObject *parent);

    /// The link is ready: looks for the address of its service from now on, whatever it was doing before.
    void start(const std::shared_ptr<ConnmanService> &service);

private:
    void look();
    void finish();

    Feedback &m_feedback;
    QTimer m_timer;
    std::shared_ptr<ConnmanService> m_service;
    int m_looksInVain = 0;
};
