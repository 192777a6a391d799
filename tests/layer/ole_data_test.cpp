// Data objects in memory: what is asked for by which format, medium and enumerator.
#include "tests/layer/ole_desk.h"

namespace
{

using namespace platform;
using namespace ole_test;

struct DataObjectTest : testing::Test
{
    DataObjectTest()
    {
        m_data->Offer(Format(u"text/plain"), "abc");
        m_data->OfferLazily(Format(u"text/made"),
                            [this]
                            {
                                ++m_made;
                                return m_gives ? std::optional<std::string>("made") : std::nullopt;
                            });
    }
    ~DataObjectTest() override
    {
        m_data.Reset();
        EXPECT_EQ(LiveShellObjects(), 0);
    }

    Held<MemoryDataObject> m_data = Held<MemoryDataObject>::Adopt(new MemoryDataObject);
    int m_made = 0;
    bool m_gives = true;
};

TEST_F(DataObjectTest, RefusesWhatItDoesNotHave)
{
    STGMEDIUM medium{};
    const auto get = [&](FORMATETC format) { return m_data->GetData(&format, &medium); };
    FORMATETC format = MemoryFormat(Format(u"text/plain"));
    format.tymed = 4; // TYMED_ISTREAM
    EXPECT_EQ(get(format), DV_E_TYMED);
    format.tymed |= TYMED_HGLOBAL;
    EXPECT_EQ(get(format), S_OK);
    EXPECT_EQ(GlobalSize(medium.hGlobal), 3U);
    ReleaseStgMedium(&medium);
    EXPECT_EQ(medium.tymed, 0U);
    format.dwAspect = 4; // DVASPECT_ICON
    EXPECT_EQ(get(format), DV_E_FORMATETC);
    EXPECT_EQ(get(MemoryFormat(Format(u"text/none"))), DV_E_FORMATETC);
}

TEST_F(DataObjectTest, MakesOnceAlsoWhenThatFails)
{
    FORMATETC format = MemoryFormat(Format(u"text/made"));
    EXPECT_EQ(m_data->QueryGetData(&format), S_OK);
    EXPECT_EQ(m_made, 0);
    m_gives = false;
    STGMEDIUM medium{};
    EXPECT_EQ(m_data->GetData(&format, &medium), E_FAIL);
    EXPECT_EQ(m_data->GetData(&format, &medium), E_FAIL);
    EXPECT_EQ(m_made, 1);
}

TEST_F(DataObjectTest, TheObjectThatOwnsAMediumFreesIt)
{
    Held<MemoryDataObject> owner = Held<MemoryDataObject>::Adopt(new MemoryDataObject);
    const HGLOBAL memory = GlobalFromBytes("xy");
    owner->AddRef();
    STGMEDIUM medium{TYMED_HGLOBAL, memory, static_cast<IDataObject*>(owner.Get())};
    FORMATETC format = MemoryFormat(Format(u"text/plain"));
    EXPECT_EQ(m_data->SetData(&format, &medium, FALSE), S_OK);
    EXPECT_EQ(DataAs(*m_data.Get(), Format(u"text/plain")), "xy");
    EXPECT_EQ(m_data->SetData(&format, &medium, TRUE), S_OK);
    EXPECT_EQ(medium.hGlobal, nullptr);
    GlobalFree(memory); // as the owner would have
}

TEST_F(DataObjectTest, AnEnumeratorsCloneGoesOnFromTheSamePlace)
{
    IEnumFORMATETC* formats = nullptr;
    EXPECT_EQ(m_data->EnumFormatEtc(2, &formats), E_NOTIMPL);
    ASSERT_EQ(m_data->EnumFormatEtc(DATADIR_GET, &formats), S_OK);
    FORMATETC format[3]{};
    EXPECT_EQ(formats->Next(2, format, nullptr), E_INVALIDARG);
    EXPECT_EQ(formats->Skip(1), S_OK);
    IEnumFORMATETC* clone = nullptr;
    ASSERT_EQ(formats->Clone(&clone), S_OK);
    ASSERT_EQ(clone->Next(1, format, nullptr), S_OK);
    EXPECT_EQ(format[0].cfFormat, Format(u"text/made"));
    EXPECT_EQ(clone->Next(1, format, nullptr), S_FALSE);
    EXPECT_EQ(formats->Next(1, format, nullptr), S_OK) << "which is its own";
    clone->Release();
    formats->Release();
}

} // namespace
