import QtQuick
import Lumora

// What tests of a page of rows share.
PageCase {
    function open(rows) { openPage({ rows }) }
    function show(rows) { bench.show({ rows }) }
    function shownTexts() { return all(host.item, item => item.truncated !== undefined && item.visible) }
    function texts() { return shownTexts().map(item => item.text) }
    function slider() { return find(host.item, item => item.visualPosition !== undefined && item.from !== undefined) }
    function field() { return find(host.item, item => item instanceof FieldRow)?.field }
    function toggle() { return find(host.item, item => item instanceof SwitchRow) }
    function allSpokenAs(name) { return spoken(control => control.name === name) }

    function aSwitch(name, value) { return { cell: RowModel.SwitchCell, name, value } }
    function aSlider(min, max, value, showValue) { return { cell: RowModel.SliderCell, min, max, value, showValue } }
    function aField(placeholder, value) { return { cell: RowModel.EditTextCell, placeholder, value } }
    function aSecureField(placeholder, value) { return { cell: RowModel.SecureEditTextCell, placeholder, value } }
    function aLink(name) { return { cell: RowModel.LinkCell, name } }
    function aList(name, valueTitle) { return { cell: RowModel.LinkListCell, name, valueTitle } }
    function anOption(name, marked) { return { cell: RowModel.ListItemCell, name, marked } }
    function aText(name) { return { cell: RowModel.StaticTextCell, name } }
    function aButton(name) { return { cell: RowModel.ButtonCell, name } }
    function aGroup(name, footerText) { return { cell: RowModel.GroupCell, name, footerText } }
}
