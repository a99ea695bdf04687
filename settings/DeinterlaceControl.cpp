// What the members share, and those that belong to no group.
#include "settings/DeinterlaceControl.h"

#include "com/AutomationBool.h"
#include "diag/Trace.h"
#include "settings/SettingsStore.h"

#include "NMFVDeinterlaceKeys.h"

#include <objbase.h>

CComTypeInfoHolder& DeinterlaceTypeInfo() {
    static CComTypeInfoHolder holder(LIBID_NMFVDeinterlaceLib, 1, 0, IID_INMFVDeinterlace);
    return holder;
}

HRESULT CDeinterlaceControl::GetFlag(REFGUID key, FlagForm form, VARIANT_BOOL* value) const {
    if (!value) {
        return E_POINTER;
    }
    const UINT32 stored = Read(key);
    *value = form == FlagForm::AsStored ? static_cast<VARIANT_BOOL>(stored) : AutomationBool(stored != 0);
    return S_OK;
}

HRESULT CDeinterlaceControl::PutFlag(REFGUID key, VARIANT_BOOL value) {
    return Write(key, value ? 1 : 0);
}

HRESULT CDeinterlaceControl::GetLong(REFGUID key, LONG* value) const {
    if (!value) {
        return E_POINTER;
    }
    *value = static_cast<LONG>(Read(key));
    return S_OK;
}

UINT32 CDeinterlaceControl::Read(REFGUID key) const {
    return ReadSetting(Store(), key);
}

HRESULT CDeinterlaceControl::Write(REFGUID key, LONG value) {
    WriteSetting(Store(), key, static_cast<UINT32>(value));
    return S_OK;
}

// An argument of -1 stands for the stored value.
LONG CDeinterlaceControl::KeptOr(LONG value, REFGUID key) const {
    return value == -1 ? static_cast<LONG>(Read(key)) : value;
}

STDMETHODIMP CDeinterlaceControl::ResetToDefaults() {
    return ResetToDefaultsEx(NMVDeinterlace_APILEVEL_1);
}

STDMETHODIMP CDeinterlaceControl::GetPages(CAUUID* pages) {
    Trace("CDeinterlaceFilter::GetPages");
    if (!pages) {
        return E_POINTER;
    }
    constexpr const GUID* kPages[] = {&CLSID_NMFVDeinterlaceSettingsPage, &CLSID_NMFVDeinterlaceRoiPage,
                                      &CLSID_NMFVDeinterlaceAboutPage};
    pages->cElems = ARRAYSIZE(kPages);
    pages->pElems = static_cast<GUID*>(CoTaskMemAlloc(sizeof(GUID) * ARRAYSIZE(kPages)));
    if (!pages->pElems) {
        return E_OUTOFMEMORY;
    }
    for (ULONG i = 0; i < pages->cElems; ++i) {
        pages->pElems[i] = *kPages[i];
    }
    return S_OK;
}
