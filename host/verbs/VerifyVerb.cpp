#include "host/verbs/Verbs.h"

#include "host/HostError.h"
#include "host/console/Console.h"
#include "host/transform/DllFile.h"
#include "host/files/Files.h"
#include "host/transform/Platform.h"
#include "host/transform/RegisteredTransform.h"
#include "host/console/Text.h"
#include "host/registration/VerifyChecks.h"

namespace host {

namespace {

constexpr std::size_t kNameWidth = 26;

std::string LineOf(const VerifyCheck& check, const Finding& finding) {
    constexpr const char* kMarks[] = {"ok     ", "-      ", "WRONG  "};
    std::string line = kMarks[static_cast<int>(finding.verdict)] + std::string(check.name);
    line.resize(kNameWidth + 7, ' ');
    line += Printable(finding.text) + "\n";
    return finding.cure.empty()
               ? line
               : line + std::string(kNameWidth + 7, ' ') + "To fix it: " + Printable(finding.cure) + "\n";
}

} // namespace

void RunVerify(const Command& command) {
    const CPlatform platform;
    const Options& options = command.options;
    if (RegisteredParts().empty()) {
        throw HostError(ExitCode::Registration, "the transform is not registered. To register it: nmfvdeint register");
    }
    const VerifySubject subject{RegisteredPath(),
                                options.dll.empty() ? DllBesideProgram() : FullPath(ToWide(options.dll))};
    std::size_t wrong = 0;
    for (const VerifyCheck& check : VerifyChecks()) {
        const Finding finding = check.look(subject, check.row);
        wrong += finding.verdict == Verdict::Wrong ? 1 : 0;
        if (!options.quiet || finding.verdict == Verdict::Wrong) {
            Print(LineOf(check, finding));
        }
    }
    if (wrong != 0) {
        throw HostError(ExitCode::Registration, "the registration is not in order: " + std::to_string(wrong) + " of " +
                                                    std::to_string(VerifyChecks().size()) + " checks failed.");
    }
    if (!options.quiet) {
        Print("The registration is in order.\n");
    }
}

} // namespace host
