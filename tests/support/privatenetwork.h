/// @file
/// A network of its own for a test program, so that programs that use the same fixed port can run side by side.
#pragma once

namespace PrivateNetwork
{

/// Moves the calling thread, and all threads that it starts later, to a network with nothing but a loopback. The first
/// call decides; call it before any thread exists that is to share the network.
/// @return false if the machine does not allow that: the program then uses the machine's network
bool Enter();

}  // namespace PrivateNetwork
