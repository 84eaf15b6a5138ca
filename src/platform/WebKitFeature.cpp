#include "platform/WebKitFeature.h"

#include "platform/GLibHandle.h"

#include <memory>

namespace corvane {

using FeatureListPtr = std::unique_ptr<WebKitFeatureList, FreeWith<webkit_feature_list_unref>>;

void setFeature(WebKitSettings* settings, std::string_view identifier, FeatureState state)
{
    const FeatureListPtr features(webkit_settings_get_all_features());
    for (gsize i = 0; i < webkit_feature_list_get_length(features.get()); ++i) {
        auto* feature = webkit_feature_list_get(features.get(), i);
        if (webkit_feature_get_identifier(feature) == identifier)
            webkit_settings_set_feature_enabled(settings, feature, state == FeatureState::on ? TRUE : FALSE);
    }
}

} // namespace corvane
