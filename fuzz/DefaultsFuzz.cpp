#include "Target.h"
#include "base/Json.h"
#include "platform/JsonDefaultsStore.h"
#include "support/MemoryFileStore.h"

namespace corvane::fuzz {
namespace {

const std::filesystem::path file = "/proc/no-such-folder/defaults.json"; // nothing can be made there, not even a lock
const std::filesystem::path previous = file.string() + ".previous";
constexpr std::string_view key = "siteIndex";

std::optional<Json> objectIn(std::string_view bytes)
{
    auto document = parseJson(bytes);
    return document && document->is_object() ? std::move(document) : std::nullopt;
}

void requireValues(const JsonDefaultsStore& defaults, const Json& expected)
{
    for (const auto& [name, value] : expected.items()) {
        const auto* text = textOf(&value);
        require(defaults.string(name) == (text == nullptr ? std::nullopt : std::optional(*text)), "texts are read");
        require(defaults.boolean(name).has_value() == value.is_boolean(), "Booleans are read");
    }
}

} // namespace

void readInput(std::string_view bytes)
{
    testing::MemoryFileStore files;
    files.files[file] = bytes;
    files.files[previous] = R"({"siteIndex":"kept","more":[1]})";
    const auto own = objectIn(bytes);
    auto expected = own ? objectIn(bytes) : objectIn(files.files[previous]);

    {
        JsonDefaultsStore defaults(files, file);
        requireValues(defaults, *expected);
        require(files.files[file] == bytes, "reading changes nothing");
        defaults.setString(key, bytes);
        (*expected)[key] = defaults.string(key).value();
    }
    require(objectIn(files.files[file]) == expected, "a change leaves every other value alone");
    require(!own || objectIn(files.files[previous]) == own, "the file before the change is the previous one");
    require(own || files.files[previous].contains("kept"), "a broken file does not replace the previous one");

    JsonDefaultsStore later(files, file);
    requireValues(later, *expected);
    later.setBoolean(key, true);
    require(later.boolean(key) == true && !later.string(key), "a value has one type");
    later.remove(key);
    expected->erase(std::string(key));
    require(objectIn(files.files[file]) == expected, "a value that is removed is gone");
}

} // namespace corvane::fuzz
