#include "platform/host/keep/unsaved_pages.h"

#include <glib.h>

#include <utility>

#include "platform/host/files/names.h"

namespace host {

namespace fs = std::filesystem;

void UnsavedPages::keep(std::unique_ptr<HeldPicture> held, const std::string& error) {
    waiting_.push_back(std::move(held));
    notices_.tell("@NotSaved", {error}, {.button = "@TryAgain", .act = [this] { saveAgain(); }});
}

void UnsavedPages::saveAgain() {
    for (std::unique_ptr<HeldPicture>& held : std::exchange(waiting_, {})) {
        std::string error;
        const std::string name = nameOf(held->file.path);
        if (held->save(*held->page, notices_, error)) {
            notices_.tell("@Saved", {name});
            held->finish();
            continue;
        }
        misplaced_ = true;
        if (saveElsewhere(*held)) {
            held->finish();
        } else if (held->journal != nullptr && held->journal->settle()) {
            say(printable(held->file.path) + ": cannot be saved anywhere now; the next start brings it back");
            notices_.tell("@KeptForNextStart", {name});
        } else {
            keep(std::move(held), error);
        }
    }
}

bool UnsavedPages::saveElsewhere(const HeldPicture& held) {
    for (const fs::path& folder : {fs::path(g_get_user_state_dir()) / "colour", fs::path(g_get_home_dir())}) {
        const fs::path wished = folder / held.file.path.filename();
        KeptPicture elsewhere{.path = isPageName(wished) ? unusedName(wished) : freeName(wished, "")};
        fs::path aside;
        std::string error;
        if (!elsewhere.save(*held.page, nullptr, aside, error)) continue;
        say(printable(held.file.path) + ": could not be saved; it is now " + printable(elsewhere.path));
        notices_.tell("@SavedElsewhere", {nameOf(held.file.path), printable(elsewhere.path)});
        return true;
    }
    return false;
}

}  // namespace host
