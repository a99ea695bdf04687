#include "host/pages/TransformPages.h"

#include "host/transform/Platform.h"
#include "host/transform/RegisteredTransform.h"
#include "host/console/Text.h"

#include <deque>
#include <olectl.h>

namespace host {

namespace {

// The frame makes pages by their identifiers; here they are the ones of this program, whatever is registered.
class CClassHere {
public:
    CClassHere(const CTransformModule& module, const CLSID& id) {
        Check(CoRegisterClassObject(id, PageFactory(module, id).Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                    &m_cookie),
              ExitCode::Transform, "a property page of the transform cannot be offered to the platform");
    }
    CClassHere(const CClassHere&) = delete;
    CClassHere& operator=(const CClassHere&) = delete;
    ~CClassHere() { CoRevokeClassObject(m_cookie); }

private:
    DWORD m_cookie = 0;
};

} // namespace

void ShowPropertyFrame(CHeldTransform& transform) {
    std::vector<CLSID> ids = PagesOf(*transform.Get());
    std::deque<CClassHere> classes;
    for (const CLSID& id : ids) {
        classes.emplace_back(transform.Module(), id);
    }
    IUnknown* object = transform.Get();
    const HRESULT result =
        OleCreatePropertyFrame(nullptr, CW_USEDEFAULT, CW_USEDEFAULT, RegisteredClasses()[0].name, 1, &object,
                               static_cast<ULONG>(ids.size()), ids.data(), GetUserDefaultLCID(), 0, nullptr);
    Check(result, ExitCode::Display, "the property frame cannot be shown");
}

// Wine's frame (seen in Wine 10) never calls IPropertyPage::Apply.
bool PropertyFrameApplies() {
    return !IsWine();
}

} // namespace host
