#include "host/pages/TransformPages.h"

#include "host/console/Text.h"

#include <ocidl.h>

using Microsoft::WRL::ComPtr;

namespace host {

std::vector<CLSID> PagesOf(IMFTransform& transform) {
    ComPtr<ISpecifyPropertyPages> specify;
    Check(transform.QueryInterface(IID_PPV_ARGS(specify.GetAddressOf())), ExitCode::Transform,
          "the transform names no property pages");
    CAUUID pages{};
    Check(specify->GetPages(&pages), ExitCode::Transform, "the transform does not tell its property pages");
    std::vector<CLSID> ids(pages.pElems, pages.pElems + pages.cElems);
    CoTaskMemFree(pages.pElems);
    return ids;
}

ComPtr<IClassFactory> PageFactory(const CTransformModule& module, const CLSID& id) {
    ComPtr<IClassFactory> factory;
    HRESULT result = module.GetFactory(id, factory.GetAddressOf());
    if (result == E_NOTIMPL) {
        result = CoGetClassObject(id, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(factory.GetAddressOf()));
    }
    Check(result, ExitCode::Transform, "a property page of the transform cannot be made");
    return factory;
}

} // namespace host
