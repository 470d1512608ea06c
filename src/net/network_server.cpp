#include "net/network_server.h"

CNetworkServer* CNetworkServer::Instance()
{
    static CNetworkServer instance;
    return &instance;
}

// There is no transport in this build: the recorder then reports that the network option is not available.
bool CNetworkServer::InitializeServer() { return false; }

void CNetworkServer::SetBufferSize(int /*size*/) {}

void CNetworkServer::SendData(char const* /*data*/, int /*size*/) {}

bool CNetworkServer::SendDataFlush(bool /*everything*/) { return false; }

void CNetworkServer::Close() { SendDataFlush(true); }
