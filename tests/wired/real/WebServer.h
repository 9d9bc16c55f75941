#pragma once

#include <QTcpServer>

/// A web server in the network at the other end of the cable, on port 80 of every address there. It answers
/// everything the way the server of ConnMan's online check does.
class WebServer : public QTcpServer
{
    Q_OBJECT
public:
    WebServer();

private:
    void answer();
};
