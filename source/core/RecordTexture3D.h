#pragma once
// RecordTexture3D: everything a generator shares once its whole state is one
// `Record` struct — the record copy and version rule, the batch loop, the
// header accessors and its GeneratorInfo.
//
// A generator `G` derives from RecordTexture3D<G> and provides:
//   struct Record { BaseData header = makeHeader(...); <fields>... };
//   Record record_;                       (its only data member)
//   static constexpr std::string_view kName, kSummary; kMajorVersion, kMinorVersion, kRecordSize;
//   static constexpr FieldInfo kFields[];
//   static float evaluate(const Record&, int flags, float x, float y, float z);
// (kSummary says what it draws, in one line, for `gritwell info` and the
// dialog's list) and, where it reads older layouts, their major versions and
// the converter, which is called only for records of those versions,
//   static constexpr int kOlderMajorVersions[] = {...};
//   static void convertOlderRecord(Record&, const char* in);
// and, where its text stream operators are to stay empty,
//   static constexpr bool kFieldsAsText = false;
// and, where a whole array evaluates faster than its points one by one,
//   static void evaluateBlock(const Record&, int flags, const float* points, int n, float* out);
// which must give every point the bits `evaluate` gives it; the batch loop
// hands it at most kBlockPoints points at a time.
//
// Its .cpp instantiates `template class RecordTexture3D<G>;` beside
// `evaluate`, so the batch loop is compiled where the evaluator can inline.

#include <cstddef>
#include <cstring>
#include <iosfwd>
#include <new>
#include <span>
#include <string>
#include <type_traits>

#include "core/FieldText.h"
#include "core/GeneratorInfo.h"
#include "core/Texture3D.h"

namespace gritwell {

template <class Derived>
class RecordTexture3D : public Texture3D {
public:
    // The most points one evaluateBlock call receives: its scratch arrays
    // live on the stack.
    static constexpr int kBlockPoints = 256;

    float operator()(const float* p) override {
        return Derived::evaluate(record(), flags(), p[0], p[1], p[2]);
    }

    void operator()(const float* points, int n, float* out) override {
        const auto& r = record();
        const int f = flags();
        if constexpr (requires { Derived::evaluateBlock(r, f, points, n, out); }) {
            // 64-bit offsets: 3 * start overflows an int past 715 million points.
            for (std::ptrdiff_t start = 0; start < n; start += kBlockPoints)
                Derived::evaluateBlock(r, f, points + 3 * start,
                                       n - start < kBlockPoints ? static_cast<int>(n - start) : kBlockPoints,
                                       out + start);
        } else {
            evaluateEach(r, f, points, n, out);
        }
    }

    // The batch loop one point at a time: what an evaluateBlock falls back
    // on for the modes it does not vectorise.
    template <class Record>
    static void evaluateEach(const Record& r, int f, const float* points, int n, float* out) {
        for (int i = 0; i < n; ++i, points += 3) out[i] = Derived::evaluate(r, f, points[0], points[1], points[2]);
    }

    // Up to kBlockPoints interleaved points as three coordinate arrays, each
    // coordinate multiplied by `scale` as `scale * x`; past n, zeros.
    struct PointBlock {
        float x[kBlockPoints]{}, y[kBlockPoints]{}, z[kBlockPoints]{};
        PointBlock(const float* points, int n, float scale) {
            for (int i = 0; i < n; ++i, points += 3) {
                x[i] = scale * points[0];
                y[i] = scale * points[1];
                z[i] = scale * points[2];
            }
        }
    };

    // Exactly the record's compile-time size, whatever byte 0 says; the
    // caller's buffer may overlap ours.
    void getDescription(char* out) override {
        std::memmove(out, &record(), sizeof(typename Derived::Record));
    }

    // A record of our version is adopted whole, header included; one of an
    // older major version the generator lists is converted; any other is
    // ignored. A mismatching record is never copied raw.
    void setStateFromDescription(const char* in) override {
        auto& r = mutableRecord();
        if (versionsMatch(in, r.header))
            std::memcpy(&r, in, sizeof r);
        else if (info().convertsMajorVersion(Texture3D::majorVersion(in)))
            Derived::convertOlderRecord(r, in);
    }

    static std::string name() { return std::string(Derived::kName); }
    static int majorVersion() { return Derived::kMajorVersion; }
    static int minorVersion() { return Derived::kMinorVersion; }

    bool interactiveUpdate() const { return record().header.interactiveUpdate != 0; }
    void setInteractiveUpdate(bool on) { mutableRecord().header.interactiveUpdate = on ? 1 : 0; }

    const auto& record() const { return static_cast<const Derived&>(*this).record_; }

    static const GeneratorInfo& info() {
        static const GeneratorInfo kInfo{Derived::kName,        Derived::kSummary,       Derived::kMajorVersion,
                                         Derived::kMinorVersion, Derived::kRecordSize,    Derived::kFields,
                                         olderMajorVersions(),   &create,                 &writeText,
                                         &readText};
        return kInfo;
    }

    // Most generators' text stream operators carry the fields of kFields.
    static constexpr bool kFieldsAsText = true;

    // A debugging aid nothing in the library calls: the fields in table
    // order with the stream's formatting, read back all or nothing (see
    // FieldText.h). Where kFieldsAsText is false both leave the stream
    // untouched.
    friend std::ostream& operator<<(std::ostream& os, const Derived& t) {
        if constexpr (Derived::kFieldsAsText) writeFieldText(os, &t.record(), Derived::kFields);
        return os;
    }
    friend std::istream& operator>>(std::istream& is, Derived& t) {
        if constexpr (Derived::kFieldsAsText) {
            auto& r = t.mutableRecord();
            readFieldText(is, &r, sizeof r, Derived::kFields);
        }
        return is;
    }

protected:
    RecordTexture3D() {
        static_assert(std::is_final_v<Derived>);
        // Released through the base destructor: nothing else may need running.
        static_assert(std::is_trivially_destructible_v<Derived>);
        using Record = typename Derived::Record;
        static_assert(std::is_standard_layout_v<Record> && std::is_trivially_copyable_v<Record>);
        static_assert(sizeof(Record) == Derived::kRecordSize && Derived::kRecordSize <= 255);
        static_assert(offsetof(Record, header) == 0);
    }

    // Generators without older layouts ignore records of other versions.
    static constexpr std::span<const int> kOlderMajorVersions{};
    template <class Record>
    static void convertOlderRecord(Record&, const char*) {}

private:
    auto& mutableRecord() { return static_cast<Derived&>(*this).record_; }
    static std::span<const int> olderMajorVersions() { return Derived::kOlderMajorVersions; }
    static Texture3D* create() { return new Derived(); }
    static std::ostream& writeText(std::ostream& os, const Texture3D& t) {
        return os << static_cast<const Derived&>(t);
    }
    static std::istream& readText(std::istream& is, Texture3D& t) { return is >> static_cast<Derived&>(t); }
};

}  // namespace gritwell
