// SPDX-License-Identifier: MIT
/// Shows an icon in a window of Qt's, in the colour of its texts, and follows its file: view_qt ICON.svg [PICTURE.png]
///
/// A click shows the next of the icon's states. With PICTURE.png the window's content is saved there, and that is all.
#include "qt_file_monitor.h"
#include "viewed_icon.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QRasterWindow>

namespace
{

class IconWindow : public QRasterWindow
{
public:
	orvan::Result<void> Open(const char* file)
	{
		setTitle(QString::fromLocal8Bit(file));
		resize(240, 240);
		return _icon.Open(file);
	}

	void Paint(QPainter& painter)
	{
		const QPalette palette = QGuiApplication::palette();
		painter.fillRect(QRect({}, size()), palette.color(QPalette::Window));
		const QColor text = palette.color(QPalette::WindowText);
		// Pixels of the screen, of which there may be several to one of the window's.
		const double scale = painter.device()->devicePixelRatioF();
		const auto drawn = _icon.Draw(static_cast<int>(width() * scale), static_cast<int>(height() * scale),
									  {text.redF(), text.greenF(), text.blueF()});
		if (!Report(drawn))
			return;
		const orvan::SVGRenderPixels& pixels = drawn.GetValue();
		painter.drawImage(QRect({}, size()), QImage(pixels.data, pixels.width, pixels.height, pixels.stride,
													QImage::Format_ARGB32_Premultiplied));
	}

protected:
	void paintEvent(QPaintEvent*) override
	{
		QPainter painter(this);
		Paint(painter);
	}

	void mousePressEvent(QMouseEvent*) override
	{
		if (Report(_icon.ShowNextState()))
			update();
	}

private:
	ViewedIcon _icon{[](void* window) { static_cast<IconWindow*>(window)->update(); }, this};
};

} // namespace

int main(int count, char** arguments)
{
	QGuiApplication application(count, arguments);
	if (count != 2 && count != 3)
		return 2;
	return RunWithModules(
		[&]() -> orvan::Result<void>
		{
			const QtFileMonitor monitor;
			IconWindow window;
			ORVAN_TRY(window.Open(arguments[1]));
			if (count == 3)
			{
				QImage picture(window.size(), QImage::Format_ARGB32_Premultiplied);
				QPainter painter(&picture);
				window.Paint(painter);
				painter.end();
				if (!picture.save(QString::fromLocal8Bit(arguments[2])))
					return orvan::IllegalStateError("'@' cannot be written.", arguments[2]);
				return {};
			}
			window.show();
			QGuiApplication::exec();
			return {};
		});
}
