#include "audio/MicrophoneChoice.h"

#include <QLatin1String>

#include <algorithm>

namespace mevo {

namespace {

constexpr QLatin1String ProductWords[] = {QLatin1String("OR"), QLatin1String("QMZ"),
                                          QLatin1String("mirandel")};

} // namespace

bool isProductMicrophone(const QString &name)
{
    return std::any_of(std::begin(ProductWords), std::end(ProductWords),
                       [&](QLatin1String word) { return name.contains(word); });
}

QString productMicrophone(const QStringList &names)
{
    const auto found = std::find_if(names.begin(), names.end(), isProductMicrophone);
    return found == names.end() ? QString() : *found;
}

} // namespace mevo
