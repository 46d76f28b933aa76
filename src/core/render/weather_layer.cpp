#include "render/weather_layer.h"

#include "render/list_numbers.h"
#include "render/scene_drawing.h"

namespace sky::render {

using namespace drawing;
using conditions::FlightCategory;

std::array<float, 3> CategoryColour(FlightCategory category) {
    switch (category) {
    case FlightCategory::Vfr:
        return {0.1f, 0.85f, 0.1f};
    case FlightCategory::Mvfr:
        return {0.25f, 0.45f, 1.0f};
    case FlightCategory::Ifr:
        return {1.0f, 0.1f, 0.1f};
    case FlightCategory::Lifr:
        return {1.0f, 0.1f, 1.0f};
    case FlightCategory::Unknown:
        break;
    }
    return {0.5f, 0.5f, 0.5f};
}

void BuildWeatherDots(GlApi& gl, const std::vector<WeatherDot>& dots) {
    if (dots.empty()) {
        gl.DeleteList(lists::kWeather);
        return;
    }
    Record(gl, lists::kWeather, [&] {
        gl.Begin(Primitive::Points);
        for (const WeatherDot& dot : dots) {
            if (dot.Category == FlightCategory::Unknown)
                continue;
            const std::array<float, 3> c = CategoryColour(dot.Category);
            gl.Colour(c[0], c[1], c[2], 1.0f);
            EmitAt(gl, dot.Place.Lat, dot.Place.Lon);
        }
        gl.End();
    });
}

} // namespace sky::render
