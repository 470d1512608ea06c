// Who has a port of this machine.
#pragma once
#include <cstdint>
#include <string>

enum class PortKind
{
    Tcp,
    Udp
};

// "123 (name)", of the process that listens there, as far as the system tells; empty if it does not.
std::string PortOwner(PortKind kind, uint16_t port);
