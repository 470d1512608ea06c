// How the sockets of the TCP routes are made.
#include "net/data_route_sockets.h"
#include "platform/platform.h"
#include "support/log.h"
#include "support/string.h"
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

// On purpose: this goes into the descriptor's flags, where it means nothing to the systems at hand. No wait
// depends on it.
constexpr int kDescriptorFlag = 0x80;

void SetFlags(int descriptor)
{
    fcntl(descriptor, F_SETFD, fcntl(descriptor, F_GETFD) | kDescriptorFlag);
    SocketKeepFromChildren(descriptor);
    // A client that goes away between the wait and accept, or an address that does not answer, must not hold
    // a call of the application.
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

// The line about this machine is logged in pieces, which stand in one line.
void LogInterfaces(int descriptor)
{
    Platform::SInterface interfaces[Platform::kMostInterfaces];
    int const count = Platform::ListInterfaces(descriptor, interfaces);
    for (int i = 0; i < count; ++i)
    {
        uint8_t const* const address = interfaces[i].address;
        LogRaw("%c%s:%u.%u.%u.%u", i == 0 ? '(' : ',', interfaces[i].name, address[0], address[1], address[2],
               address[3]);
    }
    LogRaw(")...\n");
}

CNEBTString ThisHost()
{
    char name[256] = {};
    gethostname(name, sizeof name - 1);
    return name;
}

void LogAddress(addrinfo const& found)
{
    sockaddr_in address{};
    std::memcpy(&address, found.ai_addr, sizeof address);
    uint8_t bytes[4];
    std::memcpy(bytes, &address.sin_addr, sizeof bytes);
    LogRaw("(%u.%u.%u.%u)...\n", bytes[0], bytes[1], bytes[2], bytes[3]);
}

}  // namespace

bool OpenInitRc(int& descriptor, addrinfo** result, char const* host, unsigned short port)
{
    descriptor = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    if (descriptor == -1)
        return false;
    SetFlags(descriptor);
    if (!result)
        return true;
    *result = nullptr;
    CNEBTString const service = NEBTStringFromFormattedStr("%u", port);
    CNEBTString const name = host ? CNEBTString(host) : ThisHost();
    if (!host)
        LogRaw("This server is %s:%s ", name.c_str(), service.c_str());
    LogInterfaces(descriptor);
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_protocol = IPPROTO_TCP;
    addrinfo* found = nullptr;
    int const error = getaddrinfo(name.c_str(), service.c_str(), &hints, &found);
    if (error != 0)
    {
        LogRaw("Error at getaddrinfo(): %s\n", gai_strerror(error));
        return true;
    }
    LogAddress(*found);
    *result = found;
    return true;
}
