#pragma once

#include "platform/FileSystem.h"
#include "platform/HostInterface.h"
#include "platform/UniString.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// The host's file types and its file and folder choosers. All calls on the main thread.
namespace FTM {

/// Identifies a registered file type, as long as its manager lives. 0 is none.
struct GeneralID {
    std::uint32_t value = 0;
    friend bool operator==(const GeneralID&, const GeneralID&) = default;
};

/// Recognises by its content whether a file is of a type.
using DetectionProc = bool (*)(const IO::Location& file);

/// A kind of file. Texts are 8-bit text in the system encoding; null means the empty text.
class FileType {
public:
    /// `description` is what the user sees in a list of filters, `extension` has no dot. `creator` and `type`
    /// are four-character codes, `iconID` a number among the host's icons. `listed` offers the type in
    /// choosers.
    FileType(const char* description, const char* extension, GSType creator, GSType type, int iconID,
             DetectionProc detection, const char* mimeType, bool listed);

    const GS::UniString& description() const { return description_; }
    const GS::UniString& extension() const { return extension_; }

private:
    GS::UniString description_;
    GS::UniString extension_;
};

/// The types that one module registers; they are forgotten with it.
class FileTypeManager {
public:
    /// `name` is the module's, for diagnostics.
    explicit FileTypeManager(const char* name);
    ~FileTypeManager();
    FileTypeManager(const FileTypeManager&) = delete;
    FileTypeManager& operator=(const FileTypeManager&) = delete;

private:
    friend class RootGroup;
    std::vector<GeneralID> types_;
};

/// The uppermost group of a manager's types.
class RootGroup {
public:
    explicit RootGroup(FileTypeManager& manager) : manager_(manager) {}
    GeneralID AddType(const FileType& type);

private:
    FileTypeManager& manager_;
};

}  // namespace FTM

namespace DG {

/// A chooser for one file.
class FileDialog {
public:
    enum Type : short {
        Save = 4,  ///< the file need not exist
    };

    explicit FileDialog(Type type);
    ~FileDialog();
    FileDialog(const FileDialog&) = delete;
    FileDialog& operator=(const FileDialog&) = delete;

    /// Offers a type; the first one is the default. A type that is not registered is left out.
    /// `extensionOption` 0 leaves the name that the user gives as it is.
    void AddFilter(FTM::GeneralID type, short extensionOption);
    void SetTitle(const GS::UniString& title);
    /// Where the user starts; otherwise the presenter's own choice.
    void SetFolder(const IO::Location& folder);
    /// Presets the name with the last component of `file`, which does not move the chooser to another folder.
    /// `selected` shows the name selected, ready to be typed over.
    void SelectFile(const IO::Location& file, bool selected);

    /// Runs the chooser. True when the user chose a file.
    bool Invoke();

    /// After Invoke answered true: 1 file, with index 0. Other indices give no location.
    short GetSelectionCount() const;
    IO::Location GetSelectedFile(short index) const;
    /// Index of the filter that was chosen, from 0 in the order of AddFilter.
    short GetSelectedFilter() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// A chooser for a folder.
class FolderDialog {
public:
    FolderDialog();
    ~FolderDialog();
    FolderDialog(const FolderDialog&) = delete;
    FolderDialog& operator=(const FolderDialog&) = delete;

    void SetTitle(const GS::UniString& title);
    /// Runs the chooser. True when the user chose a folder.
    bool Invoke();
    /// After Invoke answered true.
    IO::Location GetFolder() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace DG
