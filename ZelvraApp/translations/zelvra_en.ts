<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>zelvra::MenuState</name>
    <message numerus="yes">
        <source>Export %n Marked Clips…</source>
        <translation>
            <numerusform>Export %n Marked Clips…</numerusform>
            <numerusform>Export %n Marked Clips…</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>zelvra::Texts</name>
    <message numerus="yes">
        <source>%n marked clip(s)</source>
        <translation>
            <numerusform>%n marked clip</numerusform>
            <numerusform>%n marked clips</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n highlight(s)</source>
        <translation>
            <numerusform>%n highlight</numerusform>
            <numerusform>%n highlights</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n clip(s)</source>
        <translation>
            <numerusform>%n clip</numerusform>
            <numerusform>%n clips</numerusform>
        </translation>
    </message>
</context>
</TS>
