#pragma once

#include <cstdint>
#include <string_view>

#include <webkit/webkit.h>

namespace corvane {

enum class FeatureState : std::uint8_t { off, on };

/// Switches an engine feature that has no setting of its own, by its identifier. An engine that does not know the
/// feature stays as it is.
void setFeature(WebKitSettings* settings, std::string_view identifier, FeatureState state);

} // namespace corvane
