#include "platform/WebKitScriptPanel.h"

#include "platform/GLibHandle.h"

#include <string>
#include <utility>

namespace corvane {
namespace {

struct CloseDialog {
    void operator()(WebKitScriptDialog* dialog) const
    {
        webkit_script_dialog_close(dialog);
        webkit_script_dialog_unref(dialog);
    }
};

class WebKitScriptPanel final : public ScriptPanel {
public:
    explicit WebKitScriptPanel(WebKitScriptDialog* dialog) : dialog_(webkit_script_dialog_ref(dialog)) {}

    Kind kind() const override
    {
        switch (webkit_script_dialog_get_dialog_type(dialog_.get())) {
        case WEBKIT_SCRIPT_DIALOG_CONFIRM:
            return Kind::confirm;
        case WEBKIT_SCRIPT_DIALOG_PROMPT:
            return Kind::prompt;
        default:
            return Kind::alert;
        }
    }

    std::string message() const override { return textOrEmpty(webkit_script_dialog_get_message(dialog_.get())); }

    std::string defaultText() const override
    {
        if (kind() != Kind::prompt)
            return {};
        return textOrEmpty(webkit_script_dialog_prompt_get_default_text(dialog_.get()));
    }

    void accept(std::string_view text) override
    {
        if (kind() == Kind::confirm)
            webkit_script_dialog_confirm_set_confirmed(dialog_.get(), TRUE);
        else if (kind() == Kind::prompt)
            webkit_script_dialog_prompt_set_text(dialog_.get(), std::string(text).c_str());
        dialog_.reset();
    }

private:
    static std::string textOrEmpty(const char* text) { return text == nullptr ? std::string() : std::string(text); }

    std::unique_ptr<WebKitScriptDialog, CloseDialog> dialog_;
};

} // namespace

std::unique_ptr<ScriptPanel> makeScriptPanel(WebKitScriptDialog* dialog)
{
    return std::make_unique<WebKitScriptPanel>(dialog);
}

} // namespace corvane
