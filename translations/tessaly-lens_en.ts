<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>QObject</name>
    <message numerus="yes">
        <source>%1 and %n other(s)</source>
        <translation>
            <numerusform>%1 and %n other</numerusform>
            <numerusform>%1 and %n others</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>lens::DatabaseCommands</name>
    <message numerus="yes">
        <source>Delete the database %1 with its %n document(s)? Nothing brings it back.</source>
        <translation>
            <numerusform>Delete the database %1 with its %n document? Nothing brings it back.</numerusform>
            <numerusform>Delete the database %1 with its %n documents? Nothing brings it back.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>lens::ExportController</name>
    <message numerus="yes">
        <source>%n note(s) exported to %1</source>
        <translation>
            <numerusform>%n note exported to %1</numerusform>
            <numerusform>%n notes exported to %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>lens::ImportDialog</name>
    <message numerus="yes">
        <source>%n note(s) of the open database would be &amp;replaced:</source>
        <translation>
            <numerusform>%n note of the open database would be &amp;replaced:</numerusform>
            <numerusform>%n notes of the open database would be &amp;replaced:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>lens::ListExport</name>
    <message numerus="yes">
        <source>%n row(s) exported to %1</source>
        <translation>
            <numerusform>%n row exported to %1</numerusform>
            <numerusform>%n rows exported to %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>; %n cell(s) that a spreadsheet would run got an apostrophe</source>
        <translation>
            <numerusform>; %n cell that a spreadsheet would run got an apostrophe</numerusform>
            <numerusform>; %n cells that a spreadsheet would run got an apostrophe</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) exported to %1</source>
        <translation>
            <numerusform>%n document exported to %1</numerusform>
            <numerusform>%n documents exported to %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n row(s) copied</source>
        <translation>
            <numerusform>%n row copied</numerusform>
            <numerusform>%n rows copied</numerusform>
        </translation>
    </message>
</context>
</TS>
