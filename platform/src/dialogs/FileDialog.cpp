#include "platform/FileDialog.h"

#include "platform/host/DialogControl.h"
#include "platform/src/text/SystemText.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

using platform::FileChooserState;

/// The registered types of all managers.
struct FileTypes {
    std::map<std::uint32_t, FTM::FileType> types;
    std::uint32_t lastID = 0;
};

FileTypes& fileTypes() {
    static FileTypes instance;
    return instance;
}

std::string posixPath(const IO::Location& location) {
    GS::FixedCapacityString<256> path;
    return location.ToUTF8POSIXPath(&path) == kNoError ? path.ToCStr() : std::string();
}

/// A chosen path counts from the chooser's folder.
std::string absolutePath(const std::string& folder, const std::string& chosen) {
    std::error_code error;
    const std::filesystem::path path =
        std::filesystem::absolute(folder / std::filesystem::path(chosen), error);
    return error ? chosen : path.string();
}

/// Runs the chooser; no location when it was cancelled.
IO::Location runChooser(const FileChooserState& chooser, short* filter) {
    const auto chosen = platform::DialogControl::instance().runFileChooser(chooser);
    if (!chosen) return {};
    const int last = std::max(static_cast<int>(chooser.filters.size()) - 1, 0);
    if (filter != nullptr) *filter = static_cast<short>(std::clamp(chosen->filter, 0, last));
    return IO::Location::FromPosixPath(absolutePath(chooser.folder, chosen->path));
}

}  // namespace

namespace FTM {

FileType::FileType(const char* description, const char* extension, GSType, GSType, int, DetectionProc,
                   const char*, bool)
    : description_(platform::uniStringFromSystemText(description)),
      extension_(platform::uniStringFromSystemText(extension)) {}

FileTypeManager::FileTypeManager(const char*) {}

FileTypeManager::~FileTypeManager() {
    for (const GeneralID& type : types_)
        fileTypes().types.erase(type.value);
}

GeneralID RootGroup::AddType(const FileType& type) {
    const GeneralID id{++fileTypes().lastID};
    fileTypes().types.emplace(id.value, type);
    manager_.types_.push_back(id);
    return id;
}

}  // namespace FTM

namespace DG {

struct FileDialog::State {
    FileChooserState chooser;
    IO::Location selected;
    short filter = 0;
};

FileDialog::FileDialog(Type) : state_(std::make_unique<State>()) {
    state_->chooser.kind = FileChooserState::Kind::SaveFile;
}

FileDialog::~FileDialog() = default;

void FileDialog::AddFilter(FTM::GeneralID type, short) {
    const auto known = fileTypes().types.find(type.value);
    if (known == fileTypes().types.end()) return;
    state_->chooser.filters.push_back(
        {GS::UniStringToUtf8(known->second.description()), GS::UniStringToUtf8(known->second.extension())});
}

void FileDialog::SetTitle(const GS::UniString& title) {
    state_->chooser.title = GS::UniStringToUtf8(title);
}

void FileDialog::SetFolder(const IO::Location& folder) {
    state_->chooser.folder = posixPath(folder);
}

void FileDialog::SelectFile(const IO::Location& file, bool) {
    const std::string path = posixPath(file);
    state_->chooser.name = path.substr(path.rfind('/') + 1);
}

bool FileDialog::Invoke() {
    state_->selected = runChooser(state_->chooser, &state_->filter);
    return !state_->selected.IsEmpty();
}

short FileDialog::GetSelectionCount() const {
    return state_->selected.IsEmpty() ? 0 : 1;
}

IO::Location FileDialog::GetSelectedFile(short index) const {
    return index == 0 ? state_->selected : IO::Location();
}

short FileDialog::GetSelectedFilter() const {
    return state_->filter;
}

struct FolderDialog::State {
    FileChooserState chooser;
    IO::Location selected;
};

FolderDialog::FolderDialog() : state_(std::make_unique<State>()) {
    state_->chooser.kind = FileChooserState::Kind::Folder;
}

FolderDialog::~FolderDialog() = default;

void FolderDialog::SetTitle(const GS::UniString& title) {
    state_->chooser.title = GS::UniStringToUtf8(title);
}

bool FolderDialog::Invoke() {
    state_->selected = runChooser(state_->chooser, nullptr);
    return !state_->selected.IsEmpty();
}

IO::Location FolderDialog::GetFolder() const {
    return state_->selected;
}

}  // namespace DG
