// lint-own-code: a check for clang-tidy that finds nothing, but keeps the others out of the system's headers,
// whose findings nobody is shown. Looking through Qt's took three quarters of the time.

#include <clang-tidy/ClangTidyCheck.h>
#include <clang-tidy/ClangTidyModule.h>
#include <clang-tidy/ClangTidyModuleRegistry.h>
#include <vector>

namespace {

using namespace clang::ast_matchers;
using clang::tidy::ClangTidyCheck;
using clang::tidy::ClangTidyModule;
using clang::tidy::ClangTidyModuleRegistry;

class OwnCode : public ClangTidyCheck
{
public:
    using ClangTidyCheck::ClangTidyCheck;

    // The unit itself is looked at before what is declared in it.
    void registerMatchers(MatchFinder *finder) override
    {
        finder->addMatcher(translationUnitDecl().bind("unit"), this);
    }

    void check(const MatchFinder::MatchResult &result) override
    {
        std::vector<clang::Decl *> own;
        for (clang::Decl *declaration : result.Nodes.getNodeAs<clang::TranslationUnitDecl>("unit")->decls()) {
            if (!result.SourceManager->isInSystemHeader(declaration->getLocation())) {
                own.push_back(declaration);
            }
        }
        result.Context->setTraversalScope(own);
    }
};

class OwnCodeModule : public ClangTidyModule
{
public:
    void addCheckFactories(clang::tidy::ClangTidyCheckFactories &factories) override
    {
        factories.registerCheck<OwnCode>("lint-own-code");
    }
};

const ClangTidyModuleRegistry::Add<OwnCodeModule> registration("lint-own-code", "Leaves out system headers.");

} // namespace
