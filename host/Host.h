#pragma once

#include "host/AddOn.h"
#include "host/Libraries.h"
#include "host/Project.h"
#include "host/RenderingEngines.h"

#include <functional>
#include <optional>

namespace host {

/// What an entry point of a probed add-on answered.
struct EntryPointAnswer {
    const char* entryPoint;
    std::optional<GSErrCode> result;  ///< nothing when it threw
};

/// Which function table a probed add-on gets.
enum class ProbeTable {
    None,   ///< SetImportedFuncAddrs is not called
    Empty,  ///< every slot is empty
};

/// Whether the free-data entry point is called before an add-on is unloaded.
enum class FreeDataCall { Made, LeftOut };

/// The host: loaded add-ons, each with its menus and handlers, and the services that their calls reach. One
/// at a time, on the main thread. Failures are one line for the user; none means success.
class Host {
public:
    using Refusal = std::optional<std::string>;

    Host();
    /// Unloads every add-on, the last loaded first.
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// The host that is there; null when there is none.
    static Host* current();

    /// Loads a bundle and calls its entry points in order. On failure nothing of it stays.
    std::variant<AddOn*, LoadError> load(const std::string& path);
    /// Loads a bundle, calls each of its four entry points, whatever it answers, and unloads it: what an
    /// add-on does when it is called too early.
    std::variant<std::vector<EntryPointAnswer>, LoadError> probe(const std::string& path, ProbeTable table);
    /// Ends whatever would call into the add-on, calls free data, and unloads it.
    Refusal unload(AddOn& addOn, FreeDataCall freeData = FreeDataCall::Made);
    /// Carries out a menu item.
    Refusal choose(AddOn& addOn, short menuResID, int item);

    const std::vector<std::unique_ptr<AddOn>>& addOns() const { return addOns_; }
    /// By name; null when none has it.
    AddOn* find(const std::string& name) const;
    /// The add-on whose shared object contains `address`; null when none does.
    AddOn* findByAddress(const void* address) const;
    /// The add-on that is being called just now; null when none is.
    AddOn* running() const { return running_.empty() ? nullptr : running_.back(); }
    /// Whether code of an add-on is under way, waiting for the user perhaps. Nothing can be loaded, unloaded
    /// or chosen then.
    bool isBusy() const;

    /// Called when a text or mark of a menu has changed, or a menu has come or gone.
    void setMenuListener(std::function<void()> listener) { menuListener_ = std::move(listener); }
    /// Called with one line for the user when an add-on threw an exception, which was stopped there.
    void setProblemListener(std::function<void(const std::string&)> listener) {
        problemListener_ = std::move(listener);
    }

    /// What this host is working on, and with.
    Libraries& libraries() { return libraries_; }
    Project& project() { return project_; }
    RenderingEngines& renderingEngines() { return renderingEngines_; }

    /// The add-on that a call comes from: `client`, or for the null client of a call before the
    /// initialisation the one that is being called. Null when it is neither.
    AddOn* caller(APIClient client) const;
    void menusChanged() const;

private:
    class CallScope;

    std::variant<AddOn*, LoadError> open(const std::string& path);
    Refusal start(AddOn& addOn);
    /// Ends whatever would call into the add-on while its client is still known, then takes it away.
    void discard(AddOn& addOn, FreeDataCall freeData);
    void tellProblem(const std::string& addOn, const std::string& problem) const;

    std::vector<std::unique_ptr<AddOn>> addOns_;
    std::vector<AddOn*> running_;
    std::function<void()> menuListener_;
    std::function<void(const std::string&)> problemListener_;
    Project project_;
    RenderingEngines renderingEngines_;
    Libraries libraries_;
};

}  // namespace host
