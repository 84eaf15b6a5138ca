#pragma once

#include "http/HttpAnswer.h"

#include <libsoup/soup.h>

namespace corvane::server {

/// Puts the answer into the message, with the headers that every answer of this server carries. Content follows piece
/// by piece as the client takes it.
void send(const HttpAnswer& answer, SoupServerMessage* message);

} // namespace corvane::server
