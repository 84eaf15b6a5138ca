#include "settings/ThemeJSON.h"

#include "base/Json.h"

#include <utility>

namespace corvane {
namespace {

bool read(const Json& value, std::string& text)
{
    const auto* found = textOf(&value);
    if (found != nullptr)
        text = *found;
    return found != nullptr;
}

bool read(const Json& value, std::optional<std::string>& text)
{
    return read(value, text.emplace());
}

bool read(const Json& value, std::optional<std::int64_t>& number)
{
    // A real is no integer here, not even one without a fraction.
    number = value.is_number_integer() ? integerOf(value) : std::nullopt;
    return number.has_value();
}

bool read(const Json& value, std::vector<std::string>& texts)
{
    if (!value.is_array())
        return false;
    for (const auto& element : value) {
        if (!read(element, texts.emplace_back()))
            return false;
    }
    return true;
}

template <typename T>
struct Field {
    std::string_view key;
    T& value;
};

template <typename T>
bool readField(const Json& group, const Field<T>& field)
{
    const auto* value = member(group, field.key);
    return value == nullptr || read(*value, field.value);
}

/// Reads the fields of the object `group`; null stands for an absent one, which has none of them.
template <typename... T>
bool readGroup(const Json* group, const Field<T>&... fields)
{
    return group == nullptr || (group->is_object() && (readField(*group, fields) && ...));
}

bool readColors(const Json* group, ThemeJSON::Colors& colors)
{
    return readGroup(
        group, Field{"background", colors.background}, Field{"card", colors.card},
        Field{"cardBorder", colors.cardBorder}, Field{"listBackground", colors.listBackground},
        Field{"text", colors.text}, Field{"textMuted", colors.textMuted}, Field{"contentText", colors.contentText},
        Field{"contentBackground", colors.contentBackground}, Field{"link", colors.link},
        Field{"buttonPrimary", colors.buttonPrimary}, Field{"buttonSecondary", colors.buttonSecondary},
        Field{"buttonSecondaryText", colors.buttonSecondaryText}, Field{"buttonDonate", colors.buttonDonate},
        Field{"buttonDonateText", colors.buttonDonateText}, Field{"buttonBevelLight", colors.buttonBevelLight},
        Field{"buttonBevelDark", colors.buttonBevelDark}, Field{"buttonBevelDarkRight", colors.buttonBevelDarkRight},
        Field{"headingText", colors.headingText}, Field{"headingTextShadow", colors.headingTextShadow});
}

bool readSpacing(const Json* group, ThemeJSON::Spacing& spacing)
{
    return readGroup(group, Field{"padding", spacing.padding}, Field{"cardPadding", spacing.cardPadding},
                     Field{"gap", spacing.gap}, Field{"borderRadius", spacing.borderRadius},
                     Field{"buttonBorderRadius", spacing.buttonBorderRadius});
}

bool readEffects(const Json* group, ThemeJSON::Effects& effects)
{
    return readGroup(group, Field{"cardBoxShadow", effects.cardBoxShadow}, Field{"btnBoxShadow", effects.btnBoxShadow});
}

} // namespace

std::optional<ThemeJSON> decodeTheme(std::string_view bytes)
{
    const auto document = parseJson(bytes);
    if (!document || !document->is_object())
        return std::nullopt;

    ThemeJSON theme;
    const bool isReadable = readColors(member(*document, "colors"), theme.colors) &&
                            readSpacing(member(*document, "spacing"), theme.spacing) &&
                            readEffects(member(*document, "effects"), theme.effects);
    return isReadable ? std::optional(std::move(theme)) : std::nullopt;
}

} // namespace corvane
