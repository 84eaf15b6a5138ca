#include "ui/DocumentPane.h"

#include "platform/WebKitViewFactory.h"
#include "ui/Accessible.h"

#include <utility>

#include <glibmm/wrap.h>

namespace corvane {

DocumentPane::DocumentPane(DocumentViewFactory& documents, const std::string& name, const std::string& readerStyle,
                           DocumentView::LinkRule rule)
    : document_(documents.makeDocumentView()), widget_(Glib::wrap(WebKitViewFactory::widget(*document_)))
{
    document_->setReaderStyle(readerStyle);
    document_->setLinkRule(std::move(rule));
    widget_->set_hexpand(true);
    widget_->set_vexpand(true);
    setAccessibleName(*widget_, name);
    append(*widget_);
}

DocumentPane::~DocumentPane()
{
    remove(*widget_);
}

} // namespace corvane
