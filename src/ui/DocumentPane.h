#pragma once

#include "ports/DocumentView.h"

#include <memory>
#include <string>

#include <gtkmm/box.h>

namespace corvane {

/// The part of a dialog that shows a document.
class DocumentPane : public Gtk::Box {
public:
    /// `name` is what assistive technology calls the document. The rule may not destroy this object.
    DocumentPane(DocumentViewFactory& documents, const std::string& name, const std::string& readerStyle,
                 DocumentView::LinkRule rule);
    ~DocumentPane() override;

    void show(const std::string& html) { document_->show(html); }

private:
    std::unique_ptr<DocumentView> document_;
    Gtk::Widget* widget_; // belongs to the document
};

} // namespace corvane
