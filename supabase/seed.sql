-- A small canvas for a backend on one's own machine, of a user whose id everybody knows: never seed one that others
-- reach. `supabase start` and `supabase db reset` run this; `supabase db push` does not.
insert into public.blocks (
  id, user_id, x_position, y_position, width, height, z_index, block_type, content, raw_text, tags, is_todo, is_event,
  created_at, updated_at, rotation, is_bold, is_italic, is_strikethrough
)
values
  (
    '5EED0000-0000-4000-8000-000000000001', '5EED0000-0000-4000-8000-00000000A11A', -210, -110, 320, 60, 0, 'text', null,
    'This canvas came from the backend', '{}', false, false, '2026-11-23T06:00:00Z', '2026-11-23T06:00:00Z', 0, true,
    false, false
  ),
  (
    '5EED0000-0000-4000-8000-000000000002', '5EED0000-0000-4000-8000-00000000A11A', -210, -10, 240, 160, 1, 'checklist',
    '{"title": "To try", "items": [
      {"id": "5EED0000-0000-4000-8000-0000000000C1", "text": "Start a second copy with the same id", "isDone": false},
      {"id": "5EED0000-0000-4000-8000-0000000000C2", "text": "See the canvas arrive", "isDone": true}
    ]}',
    null, '{}', false, false, '2026-11-23T06:00:01Z', '2026-11-23T06:00:01.250Z', 0, false, false, false
  ),
  (
    '5EED0000-0000-4000-8000-000000000003', '5EED0000-0000-4000-8000-00000000A11A', 90, -10, 120, 120, 2, 'shape',
    '{"shapeType": "circle", "fillColor": "#FFFFFF", "strokeColor": "#333333", "strokeWidth": 2}', null, '{}', false,
    false, '2026-11-23T06:00:02Z', '2026-11-23T06:00:02Z', 0, false, false, false
  )
on conflict (id) do nothing;
