// SPDX-License-Identifier: MIT
/// The value types, through the operations that the module registered.
#include "support/svg_module.h"

namespace orvan
{
namespace
{

template <typename T>
const DataTypeOperations& OperationsOf()
{
	return *FindDataType<T>()->operations.load();
}

/// Two values next to each other in dirty storage, made and released by the module.
template <typename T>
class Pair
{
public:
	Pair()
	{
		std::memset(_storage, 0xa5, sizeof _storage);
		OperationsOf<T>().construct(_storage, 2);
	}
	Pair(const Pair&) = delete;
	~Pair()
	{
		OperationsOf<T>().destruct(_storage, 2);
	}

	T& operator[](std::size_t index)
	{
		return *std::launder(reinterpret_cast<T*>(_storage + index * sizeof(T)));
	}

private:
	alignas(T) unsigned char _storage[2 * sizeof(T)];
};

SVGRadialGradient GradientWithStops(std::size_t count)
{
	SVGRadialGradient gradient;
	for (std::size_t i = 0; i < count; i++)
		Must(gradient.stops.Append({{1.0, 0.5, 0.25}, 0.75, 0.1 * static_cast<Float>(i)}));
	return gradient;
}

class ValueTypes : public SvgModuleTest
{
};

constexpr SVGLength kZero{0.0, SVGLengthUnit::px};

TEST_F(ValueTypes, HaveTheirDefaultsWhenTheHostMakesThem)
{
	Pair<SVGLength2d> lengths;
	EXPECT_EQ((SVGLength2d{kZero, kZero}), lengths[1]);

	Pair<SVGPaint> paints;
	EXPECT_EQ(SVGPaintType::color, paints[1].type);
	EXPECT_EQ(Color(), paints[1].color);
	EXPECT_TRUE(paints[1].reference.IsEmpty());

	Pair<SVGPathCommand> commands;
	EXPECT_EQ(0, static_cast<int>(commands[1].type));
	EXPECT_EQ(Vector2d(), commands[1].points[2]);

	Pair<SVGGradientStop> stops;
	EXPECT_EQ(Color(), stops[1].color);
	EXPECT_EQ(1.0, stops[1].opacity);
	EXPECT_EQ(0.0, stops[1].offset);

	Pair<SVGViewbox> viewboxes;
	EXPECT_EQ(kZero, viewboxes[1].height);
	EXPECT_TRUE(viewboxes[1].isDefault);

	Pair<SVGViewport> viewports;
	EXPECT_EQ(kZero, viewports[1].x);
	EXPECT_EQ(kZero, viewports[1].y);
	EXPECT_EQ((SVGLength{1.0, SVGLengthUnit::percent}), viewports[1].width);
	EXPECT_EQ((SVGLength{1.0, SVGLengthUnit::percent}), viewports[1].height);

	Pair<SVGPreserveAspectRatio> ratios;
	EXPECT_EQ(0, static_cast<int>(ratios[1].align));
	EXPECT_EQ(0, static_cast<int>(ratios[1].meetOrSlice));
}

TEST_F(ValueTypes, GradientsRunFromLeftToRightAndFromTheMiddleOutwards)
{
	Pair<SVGLinearGradient> linear;
	EXPECT_EQ(SVGGradientUnits::objectBoundingBox, linear[1].units);
	EXPECT_EQ(SVGSpreadMethod::pad, linear[1].spread);
	EXPECT_TRUE(linear[1].stops.IsEmpty());
	EXPECT_EQ((std::array{0.0, 0.0, 1.0, 0.0}), (std::array{linear[1].x1, linear[1].y1, linear[1].x2, linear[1].y2}));

	Pair<SVGRadialGradient> radial;
	const SVGRadialGradient& circle = radial[1];
	EXPECT_EQ(SVGGradientUnits::objectBoundingBox, circle.units);
	EXPECT_TRUE(circle.stops.IsEmpty());
	EXPECT_EQ((std::array{0.5, 0.5, 0.5, 0.5, 0.5}),
			  (std::array{circle.cx, circle.cy, circle.r, circle.fx, circle.fy}));
}

TEST_F(ValueTypes, CopiesOfGradientsHaveStopsOfTheirOwn)
{
	const auto& operations = OperationsOf<SVGRadialGradient>();
	SVGRadialGradient many = GradientWithStops(9);
	SVGRadialGradient few = GradientWithStops(2);
	SVGRadialGradient target = GradientWithStops(5);
	const SVGGradientStop* const storage = target.stops.begin();

	Must(operations.copy(&target, &few, 1));
	EXPECT_EQ(2u, target.stops.GetCount());
	EXPECT_EQ(storage, target.stops.begin()) << "storage that suffices is reused";

	Must(operations.copy(&target, &many, 1));
	EXPECT_EQ(9u, target.stops.GetCount());
	EXPECT_EQ(9u, target.stops.GetCapacity()) << "exactly as many as the source has";
	many.stops[8].offset = 7.0;
	EXPECT_EQ(0.8, target.stops[8].offset);
	EXPECT_EQ((Color{1.0, 0.5, 0.25}), target.stops[8].color);

	const SVGRadialGradient none;
	Must(operations.copy(&target, &none, 1));
	EXPECT_TRUE(target.stops.IsEmpty());

	Must(operations.copy(&many, &many, 1));
	EXPECT_EQ(9u, many.stops.GetCount());
}

TEST_F(ValueTypes, CopiesOfPaintsShareTheReference)
{
	SVGPaint source{SVGPaintType::reference, {}, Text("grad1")};
	SVGPaint target{SVGPaintType::reference, {}, Text("grad2")};
	const auto& operations = OperationsOf<SVGPaint>();
	Must(operations.copy(&target, &source, 1));
	EXPECT_TRUE(source.reference.IsSameObject(target.reference));
	Must(operations.copy(&target, &target, 1));
	EXPECT_EQ(target.reference, "grad1");
}

TEST_F(ValueTypes, CopiesThatFailLeaveNothing)
{
	const SVGRadialGradient source = GradientWithStops(3);
	const auto& operations = OperationsOf<SVGRadialGradient>();
	EXPECT_EQ(2, FailEachAllocation(
					 [&]() -> Result<void>
					 {
						 void* copy = &copy;
						 Result<void> copied = operations.createCopy(&source, &copy);
						 EXPECT_EQ(copied.IsOk(), copy != nullptr);
						 if (copy != nullptr)
						 {
							 operations.destruct(copy, 1);
							 Host().free(copy);
						 }
						 return copied;
					 }));
}

template <typename T>
void ExpectNoComparison()
{
	SCOPED_TRACE(DataTypeTraits<T>::kName);
	Pair<T> values;
	const auto& operations = OperationsOf<T>();
	testing::internal::CaptureStderr();
	EXPECT_EQ(CompareResult::incomparable, operations.compare(&values[0], &values[0]));
	EXPECT_FALSE(operations.isEqual(&values[0], &values[0]));
	EXPECT_EQ(0u, operations.hash(&values[0]));
	const std::string stops = testing::internal::GetCapturedStderr();
	EXPECT_EQ(3, std::count(stops.begin(), stops.end(), '\n'));
	EXPECT_TRUE(stops.starts_with("Stop")) << stops;

	const std::string description = Must(operations.describe(&values[0])).CString();
	EXPECT_TRUE(description.starts_with(std::string(DataTypeTraits<T>::kName) + " 0x")) << description;
	EXPECT_EQ(Must(operations.describe(nullptr)), "nullptr");
}

TEST_F(ValueTypes, StopADebuggerWhenTheyAreComparedAndAnswerNeutrally)
{
	ExpectNoComparison<SVGPaint>();
	ExpectNoComparison<SVGLength>();
	ExpectNoComparison<SVGLength2d>();
	ExpectNoComparison<SVGPathCommand>();
	ExpectNoComparison<SVGGradientStop>();
	ExpectNoComparison<SVGLinearGradient>();
	ExpectNoComparison<SVGRadialGradient>();
	ExpectNoComparison<SVGViewbox>();
	ExpectNoComparison<SVGViewport>();
	ExpectNoComparison<SVGPreserveAspectRatio>();
}

} // namespace
} // namespace orvan
