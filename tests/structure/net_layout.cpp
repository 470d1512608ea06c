// Data routes and trace server as they lie in the memory of a 32-bit ARM device. It is compiled for that
// machine and runs nowhere: what it says holds if it compiles.
#include "field_order.h"
#include "net/broadcast.h"
#include "net/data_route.h"
#include "net/data_route_sockets.h"
#include "net/network_server.h"

static_assert(offsetof(CDataRoute, m_bytesSent) == 4, "behind the pointer to the virtual operations");
static_assert(offsetof(CDataRoute, m_bytesReceived) == 8);
static_assert(sizeof(CDataRoute) == 12);

static_assert(offsetof(CDataRouteCached, m_sendRing) == 12);
static_assert(sizeof(CDataRouteCached::m_sendRing) == 4048);
static_assert(offsetof(CDataRouteCached, m_sendStart) == 12 + 4048);
static_assert(offsetof(CDataRouteCached, m_sendCount) == 12 + 4048 + 4);
static_assert(offsetof(CDataRouteCached, m_receiveRing) == 12 + 4048 + 8);
static_assert(sizeof(CDataRouteCached::m_receiveRing) == 4048);
static_assert(offsetof(CDataRouteCached, m_receiveStart) == 12 + 2 * 4048 + 8);
static_assert(offsetof(CDataRouteCached, m_receiveCount) == 12 + 2 * 4048 + 12);
static_assert(sizeof(CDataRouteCached) == 12 + 2 * (4048 + 8));

static_assert(offsetof(CDataRouteSockets, m_pSocket) == sizeof(CDataRouteCached));
static_assert(offsetof(CDataRouteSockets, m_timeout) == sizeof(CDataRouteCached) + 4);
static_assert(offsetof(CDataRouteSockets, m_pHost) == sizeof(CDataRouteCached) + 8);
static_assert(offsetof(CDataRouteSockets, m_port) == sizeof(CDataRouteCached) + 12);
static_assert(sizeof(CDataRouteSockets::m_port) == 2);
static_assert(sizeof(CDataRouteSockets) == sizeof(CDataRouteCached) + 16);

static_assert(sizeof(CDataRouteHerd) == 4);
static_assert(offsetof(CDataRouteHerdSockets, m_pSocket) == 4);
static_assert(sizeof(CDataRouteHerdSockets) == 8);
static_assert(sizeof(SSocket) == 4);
static_assert(sizeof(CDataRouteSocketsBroadcastServer) == 4);
static_assert(sizeof(CDataRouteSocketsBroadcastClient) == 4);

using Control = CNetworkServer::SNetControl;
static_assert(Rising({offsetof(Control, bConnected), offsetof(Control, bRunning),
                      offsetof(Control, bRecording), offsetof(Control, bWaiting)}));
static_assert(sizeof(Control) == 4);

using Status = CNetworkServer::SNetStatus;
static_assert(Rising({offsetof(Status, bError), offsetof(Status, bConnected),
                      offsetof(Status, bStartRecording), offsetof(Status, bResume), offsetof(Status, bPause),
                      offsetof(Status, bStopRecording), offsetof(Status, bCloseRequest)}));
static_assert(sizeof(Status) == 7);

static_assert(offsetof(CNetworkServer, m_pHerd) == 0);
static_assert(offsetof(CNetworkServer, m_pRoute) == 4);
static_assert(offsetof(CNetworkServer, m_bClientConnected) == 8);
static_assert(offsetof(CNetworkServer, m_port) == 12);
static_assert(offsetof(CNetworkServer, m_sendBuffer) == 16);
static_assert(offsetof(CNetworkServer, m_bServerStarted) == 32);
static_assert(offsetof(CNetworkServer, m_control) == 33);
static_assert(offsetof(CNetworkServer, m_pCommandBuffer) == 40);
static_assert(offsetof(CNetworkServer, m_commandLength) == 44);
static_assert(offsetof(CNetworkServer, m_pReceiveBuffer) == 48);
static_assert(offsetof(CNetworkServer, m_bufferSize) == 52);
static_assert(offsetof(CNetworkServer, m_lastConnectionCheck) == 56);
static_assert(offsetof(CNetworkServer, m_lastReceive) == 60);
static_assert(offsetof(CNetworkServer, m_lastStatus) == 64);
