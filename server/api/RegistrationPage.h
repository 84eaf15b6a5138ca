#pragma once

#include "http/Router.h"

namespace corvane::server {

/// The registration page with its style sheet and script, under a policy that lets it load and ask nothing but this
/// server and be shown in no frame.
class RegistrationPage {
public:
    static void addTo(Router& router);
};

} // namespace corvane::server
