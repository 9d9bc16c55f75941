#include "WebServer.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <QTcpSocket>
#include <sched.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr char farNamespace[] = "/run/netns/lan";
constexpr quint16 httpPort = 80;
const QByteArray onlineReply = "HTTP/1.1 200 OK\r\n"
                               "X-ConnMan-Status: online\r\n"
                               "Content-Type: text/html\r\n"
                               "Content-Length: 0\r\n"
                               "Connection: close\r\n\r\n";

int listeningSocket()
{
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int reuse = 1;
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse);
    sockaddr_in any{};
    any.sin_family = AF_INET;
    any.sin_port = htons(httpPort);
    if (bind(listener, reinterpret_cast<const sockaddr *>(&any), sizeof any) != 0 ||
        listen(listener, SOMAXCONN) != 0) {
        qFatal("No web server: %s", std::strerror(errno));
    }
    return listener;
}

// A socket belongs for good to the network namespace of the thread that makes it.
int listenInFarNetwork()
{
    int listener = -1;
    std::thread([&listener] {
        const int network = open(farNamespace, O_RDONLY | O_CLOEXEC);
        if (setns(network, CLONE_NEWNET) != 0) {
            qFatal("No way into %s: %s", farNamespace, std::strerror(errno));
        }
        close(network);
        listener = listeningSocket();
    }).join();
    return listener;
}

} // namespace

WebServer::WebServer()
{
    setSocketDescriptor(listenInFarNetwork());
    connect(this, &QTcpServer::newConnection, this, &WebServer::answer);
}

void WebServer::answer()
{
    QTcpSocket *const client = nextPendingConnection();
    connect(client, &QTcpSocket::readyRead, client, [client] {
        client->readAll();
        client->write(onlineReply);
        client->disconnectFromHost();
    });
    connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
}
