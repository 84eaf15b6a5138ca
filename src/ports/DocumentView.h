#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace corvane {

/// A link that the user clicked in a document.
struct DocumentLink {
    std::string address; // as the engine has normalised it; a relative one stands as written, without a scheme
    bool asksForNewWindow = false;
};

/// Shows one HTML text at a time, which nobody has to trust: no script runs, and of the network only images are
/// reached. The background is transparent. Main thread only.
class DocumentView {
public:
    /// Whether the view may follow the link in itself; a link that asks for a new window is never followed, whatever
    /// the answer. May destroy the view.
    using LinkRule = std::function<bool(const DocumentLink&)>;

    virtual ~DocumentView() = default;

    /// Until there is a rule no link is followed.
    virtual void setLinkRule(LinkRule rule) = 0;

    /// A style sheet of the reader's own for whatever is shown, now and later; it wins over the document's where it
    /// says "!important". Replaces the one before.
    virtual void setReaderStyle(std::string_view css) = 0;

    /// Shows `html`, UTF-8, which has no address of its own. The text that was given last is not loaded again.
    virtual void show(std::string_view html) = 0;
};

/// Makes the views of release notes and notifications. They share nothing with the pages of services and keep nothing.
class DocumentViewFactory {
public:
    virtual ~DocumentViewFactory() = default;

    virtual std::unique_ptr<DocumentView> makeDocumentView() = 0;
};

} // namespace corvane
