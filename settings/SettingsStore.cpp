#include "settings/SettingsStore.h"

UINT32 ReadSetting(IMFAttributes* store, REFGUID key) {
    UINT32 value = 0;
    return store && SUCCEEDED(store->GetUINT32(key, &value)) ? value : 0;
}

double ReadDoubleSetting(IMFAttributes* store, REFGUID key) {
    double value = 0.0;
    return store && SUCCEEDED(store->GetDouble(key, &value)) ? value : 0.0;
}

void WriteSetting(IMFAttributes* store, REFGUID key, UINT32 value) {
    if (store) {
        (void)store->SetUINT32(key, value);
    }
}
