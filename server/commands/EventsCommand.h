#pragma once

#include "data/Database.h"

#include <string>

namespace corvane::server {

enum class EventForm { line, json };

/// The usage events in the order of their arrival, each as one line to print. `EventForm::line` is for people: time
/// (UTC), client, number of the request, name and parameters, long values cut. `EventForm::json` is a JSON object of
/// everything that was collected, in ASCII.
std::string listEvents(Database& database, EventForm form);

} // namespace corvane::server
