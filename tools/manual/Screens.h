#pragma once

#include "platform/ResourceManager.h"
#include "tools/manual/Picture.h"

#include <QString>

namespace manual {

/// Pictures of the add-on's menu and dialogs, drawn from its own resources with its Italian texts, so that
/// the manual shows what the add-on shows.
class Screens {
public:
    /// `bundlePath` is the add-on's bundle.
    explicit Screens(const QString& bundlePath);
    ~Screens();
    Screens(const Screens&) = delete;
    Screens& operator=(const Screens&) = delete;

    bool isOpen() const { return module_ != kNoResModule; }
    /// "menu", "about", "language", "update" or "info"; an empty picture for other names.
    Picture picture(const QString& name) const;

private:
    RSResModule module_;
};

}  // namespace manual
