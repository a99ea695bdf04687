// Settings that outlive the transform.
#include "tests/support/CallHook.h"
#include "tests/support/SavedSettings.h"
#include "tests/support/Transform.h"

#include <atomic>
#include <string>
#include <thread>

#include <mfapi.h>

namespace {

class Persistence : public testing::Test {
protected:
    static void ExpectLevel2(TransformUnderTest& object) {
        EXPECT_EQ(VARIANT_TRUE, object.Get(&INMFVDeinterlace::get_Enabled));
        EXPECT_EQ(VARIANT_TRUE, object.Get(&INMFVDeinterlace::get_MergeFields));
        EXPECT_EQ(1, object.Get(&INMFVDeinterlace::get_AutoDeinterlace));
    }

    PrivateRegistry m_user{HKEY_CURRENT_USER};
};

// A store in the platform's blob form.
std::vector<BYTE> BlobOf(IMFAttributes* store) {
    UINT32 size = 0;
    MFGetAttributesAsBlobSize(store, &size);
    std::vector<BYTE> blob(size);
    MFGetAttributesAsBlob(store, blob.data(), size);
    return blob;
}

TEST_F(Persistence, LastObjectGoneIsNextObjectsStart) {
    TransformUnderTest first, second;
    ASSERT_TRUE(first.Create());
    ASSERT_TRUE(second.Create());
    first.control->put_AutoDeinterlaceSensitivity(2.5);
    first.control->put_ROIRight(123);
    first.control->AddSegment(0);
    first.control->put_FrameRate(12.0);
    first.control->put_ROISettingsImportState(VARIANT_TRUE);
    first.store->SetString(MF_MT_SUBTYPE, L"a pipeline's own");
    second.Release();
    EXPECT_FALSE(ReadSavedSettings().empty());
    first.Release();

    TransformUnderTest next;
    ASSERT_TRUE(next.Create());
    EXPECT_EQ(2.5, next.Get(&INMFVDeinterlace::get_AutoDeinterlaceSensitivity));
    EXPECT_EQ(123, next.Get(&INMFVDeinterlace::get_ROIRight));
    EXPECT_EQ(0, next.Get(&INMFVDeinterlace::get_SegmentsCount));
    EXPECT_EQ(30.0, next.Get(&INMFVDeinterlace::get_FrameRate));
    EXPECT_EQ(VARIANT_FALSE, next.Get(&INMFVDeinterlace::get_ROISettingsImportState));
    UINT32 length = 0;
    EXPECT_HR(S_OK, next.store->GetStringLength(MF_MT_SUBTYPE, &length)); // a foreign item travels along
}

// A new object has its defaults. A later load leaves it alone when no blob is saved, and resets it and fails when the
// blob is corrupt.
TEST_F(Persistence, WhatIsNoBlobGivesLevel2) {
    TransformUnderTest any;
    ASSERT_TRUE(any.Create());
    const std::vector<BYTE> good = BlobOf(any.store.Get());
    const struct {
        const char* name;
        DWORD type; // REG_NONE: the key without the value
        std::vector<BYTE> bytes;
        bool corrupt;
    } kRows[] = {{"no key", MAXDWORD, {}, false},
                 {"no value", REG_NONE, {}, false},
                 {"a string", REG_SZ, {'a', 'b', 0}, false},
                 {"a number", REG_DWORD, {1, 0, 0, 0}, false},
                 {"nothing", REG_BINARY, {}, true},
                 {"one byte", REG_BINARY, {1}, true},
                 {"other bytes", REG_BINARY, {0xDE, 0xAD, 0xBE, 0xEF, 1, 2, 3}, true},
                 {"a head", REG_BINARY, {good.begin(), good.begin() + 20}, true},
                 {"no tail", REG_BINARY, {good.begin(), good.end() - 9}, true}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        ForgetSavedSettings();
        if (row.type != MAXDWORD) {
            WriteSavedSettings(row.type, row.bytes);
        }
        if (row.type == REG_NONE) {
            RegDeleteKeyValueA(HKEY_CURRENT_USER, kSettingsKey, kSettingsValue);
        }
        TransformUnderTest object;
        ASSERT_TRUE(object.Create());
        ExpectLevel2(object);
        object.control->ResetToDefaults();
        object.control->put_ROIRight(55);
        EXPECT_EQ(row.corrupt, FAILED(object.control->LoadAttributes()));
        EXPECT_EQ(row.corrupt ? VARIANT_TRUE : VARIANT_FALSE, object.Get(&INMFVDeinterlace::get_MergeFields));
        EXPECT_EQ(row.corrupt, object.Get(&INMFVDeinterlace::get_ROIRight) != 55);
    }
}

// Keys of types that nobody expects: every reader takes them as 0, and the frame path never fails for them.
TEST_F(Persistence, BlobWithForeignTypesReadsAsZero) {
    CComRef<IMFAttributes> forged;
    ASSERT_HR(S_OK, MFCreateAttributes(forged.Put(), 0));
    forged->SetString(NMFV_DEINTERLACE_ENABLED, L"yes");
    forged->SetDouble(NMFV_DEINTERLACE_ROI_RIGHT, 3.0);
    forged->SetUINT32(NMFV_DEINTERLACE_AUTO_SENSITIVITY, 7);
    WriteSavedSettings(REG_BINARY, BlobOf(forged.Get()));
    TransformUnderTest object;
    ASSERT_TRUE(object.Create());
    EXPECT_EQ(VARIANT_FALSE, object.Get(&INMFVDeinterlace::get_Enabled));
    EXPECT_EQ(0, object.Get(&INMFVDeinterlace::get_ROIRight));
    EXPECT_EQ(0.0, object.Get(&INMFVDeinterlace::get_AutoDeinterlaceSensitivity));
    EXPECT_EQ(3u, ItemsOf(object.store.Get())); // the blob replaces all items
}

// Others save blobs of two sizes in turn while this one loads: it always gets one or the other.
TEST_F(Persistence, LoadsWhileOthersSave) {
    CComRef<IMFAttributes> store;
    MFCreateAttributes(store.Put(), 0);
    store->SetUINT32(NMFV_DEINTERLACE_ROI_RIGHT, 11);
    const std::vector<BYTE> smaller = BlobOf(store.Get());
    store->SetString(MF_MT_SUBTYPE, std::wstring(2000, L'x').c_str());
    const std::vector<BYTE> large = BlobOf(store.Get());
    WriteSavedSettings(REG_BINARY, smaller);
    std::atomic<bool> done{false};
    std::thread others([&] {
        while (!done) {
            WriteSavedSettings(REG_BINARY, large);
            WriteSavedSettings(REG_BINARY, smaller);
        }
    });
    int lost = 0;
    for (int load = 0; load < 3000; ++load) {
        store->DeleteAllItems();
        EXPECT_HR(S_OK, LoadSettingsBlob(store.Get(), kSettingsKey));
        lost += ItemsOf(store.Get()) == 0;
    }
    done = true;
    others.join();
    EXPECT_EQ(0, lost);
}

// Another thread writes whenever the store is not locked.
TEST_F(Persistence, SavesTheStoreOfOneMoment) {
    TransformUnderTest object;
    ASSERT_TRUE(object.Create());
    HookedStore store(object.store.Get());
    int locked = 0;
    std::wstring text;
    store.hook.check = [&](const std::string& method, const GUID*) {
        locked += method == "LockStore" ? 1 : method == "UnlockStore" ? -1 : 0;
        if (locked == 0) {
            object.store->SetString(MF_MT_SUBTYPE, (text += L"longer").c_str());
        }
        return S_OK;
    };
    EXPECT_HR(S_OK, SaveSettingsBlob(&store, kSettingsKey));
    EXPECT_EQ(0, locked);
    EXPECT_FALSE(text.empty());
    EXPECT_HR(S_OK, LoadSettingsBlob(object.store.Get(), kSettingsKey));
}

TEST_F(Persistence, SaveReportsTheRegistrysError) {
    TransformUnderTest object;
    ASSERT_TRUE(object.Create());
    m_user.Delete(); // nothing can be made below a key that is gone
    const HRESULT hr = object.control->SaveAttributes();
    EXPECT_TRUE(FAILED(hr));
    EXPECT_EQ(FACILITY_WIN32, HRESULT_FACILITY(hr)) << Hr{hr};
    EXPECT_HR(S_OK, object.control->LoadAttributes());
}

} // namespace
